#include "host/binder/Loopback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <thread>
#include <vector>

#include "tests/binder/Peer.h"

namespace {

using aidl::tests::BpPeer;
using aidl::tests::IPeer;
using aidl::tests::Peer;
using aidl::tests::PeerClass;
using ndk::ScopedAParcel;
using ndk::ScopedAStatus;
using ndk::SharedRefBase;
using ndk::SpAIBinder;
using zarvo::host::Loopback;

/** A server's peer and what a client sees of it. */
class LoopbackTest : public testing::Test {
  protected:
    void Connect(std::shared_ptr<Peer> peer = SharedRefBase::make<Peer>()) {
        mPeer = std::move(peer);
        mLoopback = Loopback::Connect(mPeer->asBinder().get());
        mProxy = IPeer::fromBinder(mLoopback->Root());
    }

    /** Visits with nobody and returns how the call fared. */
    binder_status_t VisitStatus() {
        std::string text;
        return mProxy->visit(nullptr, 0, &text).getStatus();
    }

    std::shared_ptr<Peer> mPeer;
    std::shared_ptr<Loopback> mLoopback;
    std::shared_ptr<IPeer> mProxy;
};

TEST_F(LoopbackTest, RootIsOneRemoteObjectAsLongAsAnyoneHoldsIt) {
    Connect();
    const SpAIBinder root = mLoopback->Root();
    EXPECT_TRUE(AIBinder_isRemote(root.get()));
    EXPECT_TRUE(AIBinder_isAlive(root.get()));
    EXPECT_EQ(AIBinder_ping(root.get()), STATUS_OK);
    EXPECT_EQ(root, mLoopback->Root());
    EXPECT_EQ(root, mProxy->asBinder());
    EXPECT_NE(root, mPeer->asBinder());
    EXPECT_EQ(AIBinder_getUserData(root.get()), nullptr);
}

TEST_F(LoopbackTest, OnlyALocalObjectCanBeARoot) {
    Connect();
    EXPECT_EQ(Loopback::Connect(nullptr), nullptr);
    EXPECT_EQ(Loopback::Connect(mLoopback->Root().get()), nullptr);
}

TEST_F(LoopbackTest, CallRunsOnTheCallersThreadWithItsArguments) {
    std::thread::id servedBy;
    Connect(SharedRefBase::make<Peer>([&](const auto& visitor, int32_t number, std::string* text) {
        servedBy = std::this_thread::get_id();
        EXPECT_EQ(visitor, nullptr);
        *text = "visit " + std::to_string(number);
        return ScopedAStatus::ok();
    }));
    std::string text;
    EXPECT_TRUE(mProxy->visit(nullptr, 7, &text).isOk());
    EXPECT_EQ(text, "visit 7");
    EXPECT_EQ(servedBy, std::this_thread::get_id());
}

TEST_F(LoopbackTest, ErrorsOfMethodsReachTheCaller) {
    Connect(SharedRefBase::make<Peer>([](const auto&, int32_t number, std::string*) {
        if (number == 0) return ScopedAStatus::fromStatus(STATUS_BAD_VALUE);
        return ScopedAStatus::fromServiceSpecificErrorWithMessage(number, "busy");
    }));
    std::string text = "untouched";
    EXPECT_EQ(mProxy->visit(nullptr, 5, &text).getDescription(),
              "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'");
    EXPECT_EQ(mProxy->visit(nullptr, 0, &text).getStatus(), STATUS_BAD_VALUE);
    EXPECT_EQ(text, "untouched");
}

TEST_F(LoopbackTest, LocalObjectBecomesAProxyAndComesBackAsItself) {
    std::vector<SpAIBinder> seen;
    Connect(SharedRefBase::make<Peer>([&](const auto& visitor, int32_t, std::string*) {
        EXPECT_TRUE(visitor->isRemote());
        seen.push_back(visitor->asBinder());
        return ScopedAStatus::ok();
    }));
    const auto visitor = SharedRefBase::make<Peer>();
    std::string text;
    for (int32_t i = 0; i < 2; ++i)
        EXPECT_TRUE(mProxy->visit(visitor, i, &text).isOk());
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], seen[1]);

    std::shared_ptr<IPeer> back;
    EXPECT_TRUE(mProxy->giveBack(visitor, &back).isOk());
    EXPECT_EQ(back, visitor);
    EXPECT_TRUE(mProxy->giveBack(mProxy, &back).isOk());
    EXPECT_EQ(back->asBinder(), mProxy->asBinder());
    EXPECT_TRUE(mProxy->giveBack(nullptr, &back).isOk());
    EXPECT_EQ(back, nullptr);
}

TEST_F(LoopbackTest, CallBackArrivesOnTheWaitingThreadAtAnyDepth) {
    const auto home = std::this_thread::get_id();
    const auto countDown = [home](const auto& visitor, int32_t number, std::string* text) {
        EXPECT_EQ(std::this_thread::get_id(), home);
        if (number == 0) {
            *text = "end";
            return ScopedAStatus::ok();
        }
        return visitor->visit(visitor, number - 1, text);
    };
    Connect(SharedRefBase::make<Peer>(countDown));
    const auto visitor = SharedRefBase::make<Peer>(countDown);
    std::string text;
    EXPECT_TRUE(mProxy->visit(visitor, 10, &text).isOk());
    EXPECT_EQ(text, "end");
}

TEST_F(LoopbackTest, ProxyOfOneConnectionCannotPassAnother) {
    Connect();
    const auto other = Loopback::Connect(mPeer->asBinder().get());
    const auto foreign = IPeer::fromBinder(other->Root());
    std::shared_ptr<IPeer> back;
    EXPECT_EQ(mProxy->giveBack(foreign, &back).getStatus(), STATUS_INVALID_OPERATION);
}

TEST_F(LoopbackTest, FarObjectLivesUntilTheLastProxyGoes) {
    std::shared_ptr<IPeer> kept;
    Connect(SharedRefBase::make<Peer>([&](const auto& visitor, int32_t, std::string*) {
        kept = visitor;
        return ScopedAStatus::ok();
    }));
    bool ended = false;
    auto visitor = SharedRefBase::make<Peer>();
    visitor->onEnd = [&ended] { ended = true; };
    std::string text;
    for (int32_t i = 0; i < 3; ++i)
        EXPECT_TRUE(mProxy->visit(visitor, i, &text).isOk());
    visitor.reset();
    EXPECT_FALSE(ended);
    kept.reset();
    EXPECT_TRUE(ended);
}

TEST_F(LoopbackTest, ObjectInAParcelNeverSentIsLetGo) {
    Connect();
    bool ended = false;
    auto visitor = SharedRefBase::make<Peer>();
    visitor->onEnd = [&ended] { ended = true; };
    ScopedAParcel in;
    ASSERT_EQ(AIBinder_prepareTransaction(mProxy->asBinder().get(), in.getR()), STATUS_OK);
    ASSERT_EQ(IPeer::writeToParcel(in.get(), visitor), STATUS_OK);
    visitor.reset();
    EXPECT_FALSE(ended);
    in.set(nullptr);
    EXPECT_TRUE(ended);
}

TEST_F(LoopbackTest, OnewayCallsRunInOrderOnOneThreadOfTheConnection) {
    constexpr int32_t kCalls = 200;
    std::vector<int32_t> told;
    std::thread::id servedBy;
    std::promise<void> done;
    Connect();
    mPeer->onTell = [&](int32_t number) {
        if (told.empty()) servedBy = std::this_thread::get_id();
        EXPECT_EQ(std::this_thread::get_id(), servedBy);
        told.push_back(number);
        if (number == kCalls - 1) done.set_value();
    };
    for (int32_t i = 0; i < kCalls; ++i)
        ASSERT_TRUE(mProxy->tell(i).isOk());
    done.get_future().wait();
    mLoopback.reset();
    EXPECT_NE(servedBy, std::this_thread::get_id());
    ASSERT_EQ(told.size(), static_cast<size_t>(kCalls));
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

}  // namespace
