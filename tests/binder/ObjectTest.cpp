#include <android/binder_stability.h>

#include <thread>

#include "tests/binder/Peer.h"

namespace tests {
namespace {

using ndk::ScopedAIBinder_Weak;

AIBinder_Class* Define(const char* descriptor) {
    return AIBinder_Class_define(
            descriptor, [](void* args) { return args; },
            [](void* destroyed) {
                if (destroyed != nullptr) ++*static_cast<int*>(destroyed);
            },
            [](AIBinder*, transaction_code_t, const AParcel*, AParcel*) -> binder_status_t {
                return STATUS_OK;
            });
}

AIBinder_Class* CounterClass() {
    static AIBinder_Class* const clazz = Define("tests.Counter");
    return clazz;
}

TEST(LocalObject, LivesWithItsStrongReferencesAndIsNamedByWeakOnes) {
    int destroyed = 0;
    AIBinder* const binder = AIBinder_new(CounterClass(), &destroyed);
    EXPECT_EQ(AIBinder_getUserData(binder), &destroyed);
    EXPECT_TRUE(AIBinder_lt(nullptr, binder) && !AIBinder_lt(binder, nullptr));
    const ScopedAIBinder_Weak weak(AIBinder_Weak_new(binder));
    const ScopedAIBinder_Weak clone(AIBinder_Weak_clone(weak.get()));
    AIBinder_incStrong(binder);
    EXPECT_EQ(AIBinder_debugGetRefCount(binder), 2);
    AIBinder_decStrong(binder);
    EXPECT_EQ(SpAIBinder(AIBinder_Weak_promote(clone.get())).get(), binder);
    EXPECT_EQ(destroyed, 0);
    AIBinder_decStrong(binder);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(AIBinder_Weak_promote(weak.get()), nullptr);
    EXPECT_FALSE(AIBinder_Weak_lt(weak.get(), clone.get()));
    EXPECT_FALSE(AIBinder_Weak_lt(clone.get(), weak.get()));
}

TEST(LocalObject, IsOfItsClassAloneAndAlwaysAlive) {
    const auto peer = SharedRefBase::make<Peer>();
    const SpAIBinder binder = peer->asBinder();
    EXPECT_TRUE(AIBinder_associateClass(binder.get(), PeerClass()));
    EXPECT_FALSE(AIBinder_associateClass(binder.get(), Define(IPeer::descriptor)));
    EXPECT_FALSE(AIBinder_associateClass(binder.get(), nullptr));
    EXPECT_EQ(AIBinder_getClass(binder.get()), PeerClass());
    EXPECT_FALSE(AIBinder_isRemote(binder.get()));
    EXPECT_TRUE(AIBinder_isAlive(binder.get()));
    EXPECT_EQ(AIBinder_ping(binder.get()), STATUS_OK);
    EXPECT_EQ(IPeer::fromBinder(binder), peer);
}

TEST(NdkInterfaces, ABinderKeepsItsImplementationWhichForgetsADeadBinder) {
    auto peer = SharedRefBase::make<Peer>();
    const std::weak_ptr<Peer> weak = peer;
    SpAIBinder binder = peer->asBinder();
    EXPECT_EQ(peer->asBinder(), binder);
    EXPECT_FALSE(peer->isRemote());
    peer.reset();
    peer = weak.lock();
    ASSERT_NE(peer, nullptr);
    EXPECT_EQ(ndk::ICInterface::asInterface(binder.get()), peer);
    ndk::ScopedAIBinder_Weak old(AIBinder_Weak_new(binder.get()));
    binder = nullptr;
    EXPECT_EQ(old.promote(), nullptr);
    EXPECT_NE(peer->asBinder(), nullptr);
    peer.reset();
    EXPECT_TRUE(weak.expired());
}

TEST(NdkInterfaces, ThreadsThatAskAtOnceGetOneBinder) {
    auto peer = SharedRefBase::make<Peer>();
    for (int round = 0; round < 100; ++round) {
        SpAIBinder other;
        std::thread asker([&] { other = peer->asBinder(); });
        const SpAIBinder binder = peer->asBinder();
        asker.join();
        EXPECT_EQ(binder, other);
    }
}

TEST(NdkInterfacesDeathTest, AnObjectThatNobodyOwnedAborts) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH({ Peer onTheStack; }, "never owned");
}

/** Seen through a connection, of no class yet. */
class RemoteObject : public testing::Test {
  protected:
    const SpAIBinder mLocal = SharedRefBase::make<Peer>()->asBinder();
    const std::shared_ptr<Loopback> mLoopback = Loopback::Connect(mLocal.get());
    const SpAIBinder mRoot = mLoopback->Root();
};

TEST_F(RemoteObject, IsOfTheFirstClassThatHasItsName) {
    ScopedAParcel in;
    EXPECT_EQ(AIBinder_prepareTransaction(mRoot.get(), in.getR()), STATUS_INVALID_OPERATION);
    EXPECT_FALSE(AIBinder_associateClass(mRoot.get(), CounterClass()));
    EXPECT_EQ(AIBinder_getClass(mRoot.get()), nullptr);
    // The name is known by now, so that it takes no living object.
    mLoopback->Kill();
    EXPECT_TRUE(AIBinder_associateClass(mRoot.get(), PeerClass()));
    EXPECT_TRUE(AIBinder_associateClass(mRoot.get(), PeerClass()));
    EXPECT_FALSE(AIBinder_associateClass(mRoot.get(), Define(IPeer::descriptor)));
    EXPECT_EQ(AIBinder_getClass(mRoot.get()), PeerClass());

    const SpAIBinder dead = Loopback::Connect(mLocal.get())->Root();
    EXPECT_FALSE(AIBinder_associateClass(dead.get(), PeerClass()));
}

using Mark = void (*)(AIBinder* binder);

SpAIBinder MarkedObject(Mark mark) {
    SpAIBinder binder(AIBinder_new(CounterClass(), nullptr));
    if (mark != nullptr) mark(binder.get());
    return binder;
}

binder_status_t Call(const SpAIBinder& object, binder_flags_t flags) {
    AIBinder_associateClass(object.get(), CounterClass());
    ScopedAParcel in;
    ScopedAParcel out;
    AIBinder_prepareTransaction(object.get(), in.getR());
    return AIBinder_transact(object.get(), FIRST_CALL_TRANSACTION, in.getR(), out.getR(), flags);
}

TEST(Stability, CallIsAllowedWhereTheObjectPromisesWhatTheCallerNeeds) {
    const struct {
        Mark mark;
        binder_status_t vendorCall;
        binder_status_t systemCall;
        int32_t sentAs;
    } cases[] = {
            {nullptr, STATUS_BAD_TYPE, STATUS_OK, 12},
            {AIBinder_markVendorStability, STATUS_OK, STATUS_BAD_TYPE, 3},
            {AIBinder_markSystemStability, STATUS_BAD_TYPE, STATUS_OK, 12},
            {AIBinder_markVintfStability, STATUS_OK, STATUS_OK, 63},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sentAs);
        const SpAIBinder local = MarkedObject(c.mark);
        const auto loopback = Loopback::Connect(local.get());
        const SpAIBinder root = loopback->Root();
        EXPECT_EQ(Call(root, FLAG_PRIVATE_VENDOR), c.vendorCall);
        EXPECT_EQ(Call(root, 0), c.systemCall);
        EXPECT_EQ(Call(local, FLAG_PRIVATE_VENDOR), STATUS_OK);
        const ScopedAParcel parcel(AParcel_create());
        AParcel_writeStrongBinder(parcel.get(), local.get());
        AParcel_setDataPosition(parcel.get(), 12);
        int32_t sentAs = 0;
        AParcel_readInt32(parcel.get(), &sentAs);
        EXPECT_EQ(sentAs, c.sentAs);
    }
}

}  // namespace
}  // namespace tests
