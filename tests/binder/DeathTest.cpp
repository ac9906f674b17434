#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "host/binder/BinderFaults.h"
#include "host/binder/Loopback.h"
#include "tests/binder/Peer.h"

namespace {

using aidl::tests::IPeer;
using aidl::tests::Peer;
using ndk::ScopedAIBinder_DeathRecipient;
using ndk::ScopedAStatus;
using ndk::SharedRefBase;
using ndk::SpAIBinder;
using zarvo::host::BinderFaults;
using zarvo::host::Loopback;

/** A cookie that counts what was told of its links. */
struct Watch {
    std::atomic<int> died{0};
    std::atomic<int> unlinked{0};
    std::atomic<bool> unlinkedFirst{false};
    std::thread::id thread;
    std::function<void()> onDied;
    /** Called last of all, when the watch itself may already be gone. */
    std::function<void()> onOver;

    static void Died(void* cookie) {
        auto* const watch = static_cast<Watch*>(cookie);
        watch->thread = std::this_thread::get_id();
        if (watch->onDied) watch->onDied();
        ++watch->died;
    }
    static void Unlinked(void* cookie) {
        auto* const watch = static_cast<Watch*>(cookie);
        if (watch->died <= watch->unlinked) watch->unlinkedFirst = true;
        const auto onOver = watch->onOver;
        ++watch->unlinked;
        if (onOver) onOver();
    }
};

class DeathTest : public testing::Test {
  protected:
    DeathTest() { AIBinder_DeathRecipient_setOnUnlinked(mRecipient.get(), Watch::Unlinked); }

    void Connect(std::shared_ptr<Peer> peer = SharedRefBase::make<Peer>()) {
        mPeer = std::move(peer);
        mLoopback = Loopback::Connect(mPeer->asBinder().get());
        mRoot = mLoopback->Root();
        mProxy = IPeer::fromBinder(mRoot);
    }

    binder_status_t Link(Watch* watch) {
        return AIBinder_linkToDeath(mRoot.get(), mRecipient.get(), watch);
    }
    binder_status_t Unlink(Watch* watch) {
        return AIBinder_unlinkToDeath(mRoot.get(), mRecipient.get(), watch);
    }
    void KillAndWait() {
        mLoopback->Kill();
        mLoopback->WaitForNotices();
    }
    binder_status_t VisitStatus(int32_t number = 0) {
        std::string text;
        return mProxy->visit(nullptr, number, &text).getStatus();
    }

    ScopedAIBinder_DeathRecipient mRecipient{AIBinder_DeathRecipient_new(Watch::Died)};
    Watch mWatch;
    std::shared_ptr<Peer> mPeer;
    std::shared_ptr<Loopback> mLoopback;
    SpAIBinder mRoot;
    std::shared_ptr<IPeer> mProxy;
};

TEST_F(DeathTest, KillingAnIdleConnectionMakesItsProxiesDead) {
    int visits = 0;
    Connect(SharedRefBase::make<Peer>([&](const auto&, int32_t, std::string*) {
        ++visits;
        return ScopedAStatus::ok();
    }));
    mLoopback->Kill();
    EXPECT_FALSE(AIBinder_isAlive(mRoot.get()));
    EXPECT_EQ(AIBinder_ping(mRoot.get()), STATUS_DEAD_OBJECT);
    EXPECT_EQ(VisitStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(mProxy->tell(1).getStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(visits, 0);
    EXPECT_EQ(mLoopback->Root(), mRoot);
}

TEST_F(DeathTest, EveryLinkGivesOneNoticeAndIsThenUnlinked) {
    Connect();
    Watch once;
    EXPECT_EQ(Link(&once), STATUS_OK);
    EXPECT_EQ(Link(&mWatch), STATUS_OK);
    EXPECT_EQ(Link(&mWatch), STATUS_OK);
    KillAndWait();
    KillAndWait();
    EXPECT_EQ(once.died, 1);
    EXPECT_EQ(once.unlinked, 1);
    EXPECT_EQ(mWatch.died, 2);
    EXPECT_EQ(mWatch.unlinked, 2);
    EXPECT_FALSE(once.unlinkedFirst || mWatch.unlinkedFirst);
    EXPECT_NE(once.thread, std::this_thread::get_id());
    EXPECT_EQ(Unlink(&once), STATUS_NAME_NOT_FOUND);
}

TEST_F(DeathTest, BothEndsGetTheirNotices) {
    std::shared_ptr<IPeer> seen;
    Connect(SharedRefBase::make<Peer>([&](const auto& visitor, int32_t, std::string*) {
        seen = visitor;
        return ScopedAStatus::ok();
    }));
    std::string text;
    ASSERT_TRUE(mProxy->visit(SharedRefBase::make<Peer>(), 0, &text).isOk());
    Watch atServer;
    ASSERT_EQ(AIBinder_linkToDeath(seen->asBinder().get(), mRecipient.get(), &atServer), STATUS_OK);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    KillAndWait();
    EXPECT_EQ(atServer.died, 1);
    EXPECT_EQ(mWatch.died, 1);
}

TEST_F(DeathTest, UnlinkTakesOneLinkOfThatCookieBack) {
    Connect();
    Watch other;
    EXPECT_EQ(Unlink(&mWatch), STATUS_NAME_NOT_FOUND);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    EXPECT_EQ(Unlink(&other), STATUS_NAME_NOT_FOUND);
    EXPECT_EQ(Unlink(&mWatch), STATUS_OK);
    EXPECT_EQ(mWatch.unlinked, 1);
    KillAndWait();
    EXPECT_EQ(mWatch.died, 1);
    EXPECT_EQ(mWatch.unlinked, 2);
}

TEST_F(DeathTest, LinkThatFailsIsUnlinkedAtOnce) {
    Connect();
    const auto link = [this](AIBinder* binder) {
        return AIBinder_linkToDeath(binder, mRecipient.get(), &mWatch);
    };
    EXPECT_EQ(link(mPeer->asBinder().get()), STATUS_INVALID_OPERATION);
    EXPECT_EQ(mWatch.unlinked, 1);
    BinderFaults::Instance().linkToDeath.FailCalls(1);
    EXPECT_EQ(link(mRoot.get()), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(mWatch.unlinked, 2);
    mLoopback->Kill();
    EXPECT_EQ(link(mRoot.get()), STATUS_DEAD_OBJECT);
    EXPECT_EQ(mWatch.unlinked, 3);
    EXPECT_EQ(link(nullptr), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(AIBinder_linkToDeath(mRoot.get(), nullptr, &mWatch), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(mWatch.died, 0);
}

TEST_F(DeathTest, UnlinkWhileDyingSaysSo) {
    Connect();
    Watch second;
    std::promise<void> inNotice;
    std::promise<void> goOn;
    mWatch.onDied = [&] {
        inNotice.set_value();
        goOn.get_future().wait();
    };
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&second), STATUS_OK);
    mLoopback->Kill();
    inNotice.get_future().wait();
    EXPECT_EQ(Unlink(&mWatch), STATUS_NAME_NOT_FOUND);
    EXPECT_EQ(Unlink(&second), STATUS_DEAD_OBJECT);
    goOn.set_value();
    mLoopback->WaitForNotices();
    EXPECT_EQ(second.died, 1);
}

TEST_F(DeathTest, DeletedRecipientAndEndedProxyTakeTheirLinksAlong) {
    Connect();
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    mRecipient.set(nullptr);
    EXPECT_EQ(mWatch.unlinked, 2);

    mRecipient.set(AIBinder_DeathRecipient_new(Watch::Died));
    AIBinder_DeathRecipient_setOnUnlinked(mRecipient.get(), Watch::Unlinked);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    mProxy.reset();
    mRoot.set(nullptr);
    EXPECT_EQ(mWatch.unlinked, 3);
    KillAndWait();
    EXPECT_EQ(mWatch.died, 0);
}

TEST_F(DeathTest, CallInFlightComesBackDeadWhenItsHandlerReturns) {
    std::promise<void> entered;
    std::promise<void> goOn;
    bool left = false;
    Connect(SharedRefBase::make<Peer>([&](const auto&, int32_t, std::string*) {
        entered.set_value();
        goOn.get_future().wait();
        left = true;
        return ScopedAStatus::ok();
    }));
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    std::thread killer([&] {
        entered.get_future().wait();
        KillAndWait();
        EXPECT_EQ(mWatch.died, 1);
        goOn.set_value();
    });
    EXPECT_EQ(VisitStatus(), STATUS_DEAD_OBJECT);
    EXPECT_TRUE(left);
    killer.join();
}

TEST_F(DeathTest, HandlerMayKillItsOwnConnection) {
    Connect(SharedRefBase::make<Peer>([this](const auto& visitor, int32_t, std::string* text) {
        mLoopback->Kill();
        EXPECT_EQ(visitor->visit(nullptr, 0, text).getStatus(), STATUS_DEAD_OBJECT);
        mLoopback->WaitForNotices();
        return ScopedAStatus::ok();
    }));
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    std::string text;
    EXPECT_EQ(mProxy->visit(SharedRefBase::make<Peer>(), 0, &text).getStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(mWatch.died, 1);
    EXPECT_NE(mWatch.thread, std::this_thread::get_id());
}

TEST_F(DeathTest, KillLetsGoWhatItHeldForTheOtherEnd) {
    Connect();
    bool ended = false;
    mPeer->onEnd = [&ended] { ended = true; };
    mPeer.reset();
    EXPECT_EQ(VisitStatus(), STATUS_OK);
    mLoopback->Kill();
    EXPECT_TRUE(ended);
}

TEST_F(DeathTest, OnewayCallsNotBegunAreDroppedAtDeath) {
    std::promise<void> entered;
    std::promise<void> goOn;
    std::vector<int32_t> told;
    Connect();
    mPeer->onTell = [&](int32_t number) {
        told.push_back(number);
        entered.set_value();
        goOn.get_future().wait();
    };
    ASSERT_TRUE(mProxy->tell(0).isOk());
    ASSERT_TRUE(mProxy->tell(1).isOk());
    entered.get_future().wait();
    mLoopback->Kill();
    goOn.set_value();
    mLoopback.reset();
    EXPECT_EQ(told, std::vector<int32_t>{0});
}

TEST_F(DeathTest, LastLoopbackPointerMayGoInANoticeAndProxiesOutliveIt) {
    Connect();
    std::promise<void> killed;
    // The connection's thread is joined by nobody: what it tells last outlives this test.
    const auto over = std::make_shared<std::promise<void>>();
    Watch last;
    mWatch.onDied = [&] {
        mLoopback->WaitForNotices();
        killed.get_future().wait();
        mLoopback.reset();
    };
    last.onOver = [over] { over->set_value(); };
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&last), STATUS_OK);
    mLoopback->Kill();
    killed.set_value();
    over->get_future().wait();
    EXPECT_EQ(mLoopback, nullptr);
    EXPECT_EQ(last.died, 1);
    EXPECT_EQ(VisitStatus(), STATUS_DEAD_OBJECT);
}

TEST_F(DeathTest, OrderedFaultsFailJustTheCallsOrdered) {
    int visits = 0;
    Connect(SharedRefBase::make<Peer>([&](const auto&, int32_t, std::string*) {
        ++visits;
        return ScopedAStatus::ok();
    }));
    BinderFaults& faults = BinderFaults::Instance();
    faults.transact.FailCalls(2);
    faults.ping.FailCalls(1);
    faults.unlinkToDeath.FailCalls(1);
    EXPECT_EQ(AIBinder_ping(mRoot.get()), STATUS_DEAD_OBJECT);
    EXPECT_EQ(AIBinder_ping(mRoot.get()), STATUS_OK);
    EXPECT_EQ(VisitStatus(), STATUS_OK);
    EXPECT_EQ(VisitStatus(), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(VisitStatus(), STATUS_OK);
    EXPECT_EQ(visits, 2);
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    EXPECT_EQ(Unlink(&mWatch), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(Unlink(&mWatch), STATUS_OK);
}

/** Everything at once, for the thread sanitizer: each link still ends exactly once. */
TEST_F(DeathTest, CallsLinksAndDropsRaceAgainstKill) {
    constexpr int kRounds = 30;
    constexpr int kThreads = 3;
    for (int round = 0; round < kRounds; ++round) {
        std::mutex keptMutex;
        std::vector<std::shared_ptr<IPeer>> kept;
        Connect(SharedRefBase::make<Peer>([&](const auto& visitor, int32_t, std::string*) {
            const std::lock_guard lock(keptMutex);
            kept.push_back(visitor);
            if (kept.size() > 3) kept.erase(kept.begin());
            return ScopedAStatus::ok();
        }));
        std::atomic<int> linked{0};
        std::atomic<int> calls{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&] {
                binder_status_t status = STATUS_OK;
                while (status != STATUS_DEAD_OBJECT) {
                    std::string text;
                    status = mProxy->visit(SharedRefBase::make<Peer>(), 0, &text).getStatus();
                    EXPECT_TRUE(status == STATUS_OK || status == STATUS_DEAD_OBJECT) << status;
                    mProxy->tell(1);
                    Link(&mWatch);
                    ++linked;
                    Unlink(&mWatch);
                    mLoopback->Root();
                    ++calls;
                }
            });
        }
        while (calls < 20)
            std::this_thread::yield();
        std::thread killer([this] { mLoopback->Kill(); });
        mLoopback->Kill();
        killer.join();
        for (auto& thread : threads)
            thread.join();
        mLoopback->WaitForNotices();
        EXPECT_EQ(mWatch.unlinked, linked);
        mWatch.unlinked = 0;
        kept.clear();
    }
}

}  // namespace
