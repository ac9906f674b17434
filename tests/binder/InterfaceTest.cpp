#include <android/binder_to_string.h>

#include <thread>

#include "tests/binder/Peer.h"

namespace tests {
namespace {

TEST(NdkOwners, CountReferencesAndResources) {
    SpAIBinder binder = SharedRefBase::make<Peer>()->asBinder();
    AIBinder* raw = binder.get();
    const SpAIBinder copy = binder;
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 2);
    binder = *&binder;
    SpAIBinder moved = std::move(binder);
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 2);
    EXPECT_TRUE(moved == copy && raw == moved && moved != nullptr && nullptr < moved);
    moved = nullptr;
    EXPECT_EQ(AIBinder_debugGetRefCount(raw), 1);
    EXPECT_FALSE(ScopedAStatus().isOk());
    ScopedAStatus status = ScopedAStatus::fromServiceSpecificErrorWithMessage(5, "busy");
    status = std::move(*&status);
    EXPECT_EQ(status.getDescription(), "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'");
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

template <typename T, typename = void>
constexpr bool kMakeSharedCompiles = false;
template <typename T>
constexpr bool kMakeSharedCompiles<T, std::void_t<decltype(std::make_shared<T>())>> = true;
static_assert(kMakeSharedCompiles<int> && !kMakeSharedCompiles<Peer>);

TEST(NdkInterfacesDeathTest, AnObjectThatNobodyOwnedAborts) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH({ Peer onTheStack; }, "never owned");
}

TEST(NdkText, PrintsBooleansAndWhatMayBeNull) {
    using android::internal::ToString;
    EXPECT_EQ(ToString(std::vector<bool>{true, false}), "[true, false]");
    EXPECT_EQ(ToString(std::optional<int>()) + ToString(std::make_shared<int>(2)), "(null)2");
}

}  // namespace
}  // namespace tests
