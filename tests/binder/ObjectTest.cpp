#include <gtest/gtest.h>
#include <unistd.h>

#include "host/binder/Loopback.h"
#include "tests/binder/Hex.h"
#include "tests/binder/Peer.h"

namespace {

using aidl::tests::IPeer;
using aidl::tests::OtherPeerClass;
using aidl::tests::Peer;
using aidl::tests::PeerClass;
using ndk::ScopedAIBinder_Weak;
using ndk::ScopedAParcel;
using ndk::SharedRefBase;
using ndk::SpAIBinder;
using zarvo::host::Loopback;

AIBinder_Class* Define(const char* descriptor) {
    return AIBinder_Class_define(
            descriptor, [](void* args) { return args; },
            [](void* userData) { ++*static_cast<int*>(userData); },
            [](AIBinder*, transaction_code_t, const AParcel*, AParcel*) -> binder_status_t {
                return STATUS_OK;
            });
}

TEST(Class, NeedsAllItsParts) {
    AIBinder_Class* const clazz = Define("tests.Counter");
    ASSERT_NE(clazz, nullptr);
    EXPECT_STREQ(AIBinder_Class_getDescriptor(clazz), "tests.Counter");
    EXPECT_EQ(Define(nullptr), nullptr);
    EXPECT_EQ(AIBinder_Class_define("tests.Counter", nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(AIBinder_new(nullptr, nullptr), nullptr);
}

TEST(LocalObject, LivesWithItsStrongReferencesAndIsNamedByWeakOnes) {
    int destroyed = 0;
    AIBinder* const binder = AIBinder_new(Define("tests.Counter"), &destroyed);
    EXPECT_EQ(AIBinder_getUserData(binder), &destroyed);
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

TEST(LocalObject, OrderOfWeakReferencesIsThatOfTheirObjects) {
    const auto one = SharedRefBase::make<Peer>()->asBinder();
    const auto other = SharedRefBase::make<Peer>()->asBinder();
    const ScopedAIBinder_Weak weakOne(AIBinder_Weak_new(one.get()));
    const ScopedAIBinder_Weak weakOther(AIBinder_Weak_new(other.get()));
    const bool less = AIBinder_lt(one.get(), other.get());
    EXPECT_NE(less, AIBinder_lt(other.get(), one.get()));
    EXPECT_EQ(less, AIBinder_Weak_lt(weakOne.get(), weakOther.get()));
    EXPECT_TRUE(AIBinder_lt(nullptr, one.get()));
}

TEST(LocalObject, IsOfItsClassAloneAndAlwaysAlive) {
    const auto peer = SharedRefBase::make<Peer>();
    const SpAIBinder binder = peer->asBinder();
    EXPECT_EQ(binder, peer->asBinder());
    EXPECT_TRUE(AIBinder_associateClass(binder.get(), PeerClass()));
    EXPECT_FALSE(AIBinder_associateClass(binder.get(), OtherPeerClass()));
    EXPECT_FALSE(AIBinder_associateClass(binder.get(), nullptr));
    EXPECT_EQ(AIBinder_getClass(binder.get()), PeerClass());
    EXPECT_FALSE(AIBinder_isRemote(binder.get()));
    EXPECT_TRUE(AIBinder_isAlive(binder.get()));
    EXPECT_EQ(AIBinder_ping(binder.get()), STATUS_OK);
    EXPECT_EQ(IPeer::fromBinder(binder), peer);
}

TEST(LocalObject, NullIsNoObject) {
    EXPECT_FALSE(AIBinder_isRemote(nullptr));
    EXPECT_FALSE(AIBinder_isAlive(nullptr));
    EXPECT_FALSE(AIBinder_associateClass(nullptr, PeerClass()));
    EXPECT_EQ(AIBinder_ping(nullptr), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(AIBinder_dump(nullptr, -1, nullptr, 0), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(AIBinder_getClass(nullptr), nullptr);
    EXPECT_EQ(AIBinder_getUserData(nullptr), nullptr);
    EXPECT_EQ(AIBinder_debugGetRefCount(nullptr), -1);
    EXPECT_EQ(AIBinder_Weak_new(nullptr), nullptr);
    AIBinder_incStrong(nullptr);
    AIBinder_decStrong(nullptr);
    AIBinder_markVintfStability(nullptr);
}

TEST(RemoteObject, IsOfTheFirstClassThatHasItsName) {
    const auto loopback = Loopback::Connect(SharedRefBase::make<Peer>()->asBinder().get());
    const SpAIBinder root = loopback->Root();
    ScopedAParcel in;
    EXPECT_EQ(AIBinder_prepareTransaction(root.get(), in.getR()), STATUS_INVALID_OPERATION);
    EXPECT_FALSE(AIBinder_associateClass(root.get(), Define("tests.Counter")));
    EXPECT_EQ(AIBinder_getClass(root.get()), nullptr);
    // The name is known by now, so that it takes no living object.
    loopback->Kill();
    EXPECT_TRUE(AIBinder_associateClass(root.get(), PeerClass()));
    EXPECT_TRUE(AIBinder_associateClass(root.get(), PeerClass()));
    EXPECT_FALSE(AIBinder_associateClass(root.get(), OtherPeerClass()));
    EXPECT_EQ(AIBinder_getClass(root.get()), PeerClass());

    const SpAIBinder dead =
            Loopback::Connect(SharedRefBase::make<Peer>()->asBinder().get())->Root();
    EXPECT_FALSE(AIBinder_associateClass(dead.get(), PeerClass()));
}

TEST(RemoteObject, CannotDumpWhatALocalOneCan) {
    const SpAIBinder local = SharedRefBase::make<Peer>()->asBinder();
    const auto loopback = Loopback::Connect(local.get());
    EXPECT_EQ(AIBinder_dump(local.get(), STDERR_FILENO, nullptr, 0), STATUS_OK);
    EXPECT_EQ(AIBinder_dump(loopback->Root().get(), STDERR_FILENO, nullptr, 0), STATUS_BAD_TYPE);
}

TEST(RemoteObject, ShowsTheExtensionOfItsObject) {
    const SpAIBinder local = SharedRefBase::make<Peer>()->asBinder();
    const auto extension = SharedRefBase::make<Peer>();
    const auto loopback = Loopback::Connect(local.get());
    const SpAIBinder root = loopback->Root();
    SpAIBinder shown;
    EXPECT_EQ(AIBinder_getExtension(root.get(), shown.getR()), STATUS_OK);
    EXPECT_EQ(shown.get(), nullptr);
    EXPECT_EQ(AIBinder_setExtension(root.get(), local.get()), STATUS_INVALID_OPERATION);
    EXPECT_EQ(AIBinder_setExtension(local.get(), extension->asBinder().get()), STATUS_OK);
    EXPECT_EQ(AIBinder_getExtension(root.get(), shown.getR()), STATUS_OK);
    EXPECT_TRUE(AIBinder_isRemote(shown.get()));
}

enum class Mark { kNone, kVendor, kSystem, kVintf };

struct StabilityCase {
    Mark mark;
    bool vendorCallerMay;
    bool systemCallerMay;
    int32_t sentAs;
};

SpAIBinder MarkedPeer(Mark mark) {
    SpAIBinder binder = SharedRefBase::make<Peer>()->asBinder();
    if (mark == Mark::kVendor) AIBinder_markVendorStability(binder.get());
    if (mark == Mark::kSystem) AIBinder_markSystemStability(binder.get());
    if (mark == Mark::kVintf) AIBinder_markVintfStability(binder.get());
    return binder;
}

binder_status_t Tell(const SpAIBinder& peer, binder_flags_t flags) {
    AIBinder_associateClass(peer.get(), PeerClass());
    ScopedAParcel in;
    ScopedAParcel out;
    AIBinder_prepareTransaction(peer.get(), in.getR());
    AParcel_writeInt32(in.get(), 1);
    return AIBinder_transact(peer.get(), IPeer::TRANSACTION_tell, in.getR(), out.getR(), flags);
}

TEST(Stability, CallIsAllowedWhereTheObjectPromisesWhatTheCallerNeeds) {
    const StabilityCase cases[] = {
            {Mark::kNone, false, true, 12},
            {Mark::kVendor, true, false, 3},
            {Mark::kSystem, false, true, 12},
            {Mark::kVintf, true, true, 63},
    };
    for (const StabilityCase& stability : cases) {
        SCOPED_TRACE(stability.sentAs);
        const SpAIBinder local = MarkedPeer(stability.mark);
        const auto loopback = Loopback::Connect(local.get());
        const SpAIBinder root = loopback->Root();
        EXPECT_EQ(Tell(root, FLAG_PRIVATE_VENDOR),
                  stability.vendorCallerMay ? STATUS_OK : STATUS_BAD_TYPE);
        EXPECT_EQ(Tell(root, 0), stability.systemCallerMay ? STATUS_OK : STATUS_BAD_TYPE);
        EXPECT_EQ(Tell(local, FLAG_PRIVATE_VENDOR), STATUS_OK);
        EXPECT_EQ(AIBinder_ping(root.get()), STATUS_OK);

        const ScopedAParcel parcel(AParcel_create());
        int32_t level = 0;
        AParcel_writeStrongBinder(parcel.get(), local.get());
        AParcel_setDataPosition(parcel.get(), 12);
        AParcel_readInt32(parcel.get(), &level);
        EXPECT_EQ(level, stability.sentAs);
    }
}

TEST(Stability, FirstMarkOrFirstSendingStands) {
    const SpAIBinder binder = MarkedPeer(Mark::kVendor);
    AIBinder_markVintfStability(binder.get());
    const auto vendor = Loopback::Connect(binder.get());
    EXPECT_EQ(Tell(vendor->Root(), 0), STATUS_BAD_TYPE);

    const SpAIBinder lowered = MarkedPeer(Mark::kVintf);
    AIBinder_forceDowngradeToSystemStability(lowered.get());
    const auto system = Loopback::Connect(lowered.get());
    AIBinder_markVintfStability(lowered.get());
    EXPECT_EQ(Tell(system->Root(), FLAG_PRIVATE_VENDOR), STATUS_BAD_TYPE);
}

}  // namespace
