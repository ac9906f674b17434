#include <atomic>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "host/binder/BinderFaults.h"
#include "tests/binder/Peer.h"

namespace tests {
namespace {

using zarvo::host::BinderFaults;

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

class DeathTest : public ConnectionTest {
  protected:
    DeathTest() { SetRecipient(); }
    /** Notices may use what ends now. */
    ~DeathTest() override { mLoopback.reset(); }

    void SetRecipient() {
        mRecipient.set(AIBinder_DeathRecipient_new(Watch::Died));
        AIBinder_DeathRecipient_setOnUnlinked(mRecipient.get(), Watch::Unlinked);
    }
    binder_status_t LinkTo(AIBinder* binder, Watch* watch) {
        return AIBinder_linkToDeath(binder, mRecipient.get(), watch);
    }
    binder_status_t Link(Watch* watch) { return LinkTo(mRoot.get(), watch); }
    binder_status_t Unlink(Watch* watch) {
        return AIBinder_unlinkToDeath(mRoot.get(), mRecipient.get(), watch);
    }
    void KillAndWait() {
        mLoopback->Kill();
        mLoopback->WaitForNotices();
    }

    Watch mWatch;
    Watch mOther;
    Watch mAtServer;
    ndk::ScopedAIBinder_DeathRecipient mRecipient;
};

TEST_F(DeathTest, EveryLinkOfBothEndsGivesOneNoticeAndIsThenUnlinked) {
    ASSERT_EQ(Visit(SharedRefBase::make<Peer>()), STATUS_OK);
    EXPECT_EQ(LinkTo(mPeer->visitor->asBinder().get(), &mAtServer), STATUS_OK);
    EXPECT_EQ(Unlink(&mWatch), STATUS_NAME_NOT_FOUND);
    EXPECT_EQ(Link(&mWatch), STATUS_OK);
    EXPECT_EQ(Link(&mWatch), STATUS_OK);
    EXPECT_EQ(Unlink(&mOther), STATUS_NAME_NOT_FOUND);
    EXPECT_EQ(Link(&mOther), STATUS_OK);
    // Of two links with one cookie, one is taken back.
    EXPECT_EQ(Unlink(&mWatch), STATUS_OK);
    EXPECT_EQ(mWatch.unlinked, 1);
    KillAndWait();
    KillAndWait();
    for (const Watch* watch : {&mWatch, &mOther, &mAtServer}) {
        EXPECT_EQ(watch->died, 1);
        EXPECT_EQ(watch->unlinked, watch == &mWatch ? 2 : 1);
        EXPECT_EQ(watch->unlinkedFirst, watch == &mWatch);
        EXPECT_NE(watch->thread, std::this_thread::get_id());
    }
    EXPECT_EQ(Unlink(&mOther), STATUS_NAME_NOT_FOUND);
}

TEST_F(DeathTest, LinkThatFailsIsUnlinkedAtOnce) {
    EXPECT_EQ(LinkTo(mPeer->asBinder().get(), &mWatch), STATUS_INVALID_OPERATION);
    EXPECT_EQ(mWatch.unlinked, 1);
    BinderFaults::Instance().linkToDeath.FailCalls(1);
    EXPECT_EQ(Link(&mWatch), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(mWatch.unlinked, 2);
    mLoopback->Kill();
    EXPECT_FALSE(AIBinder_isAlive(mRoot.get()));
    EXPECT_EQ(AIBinder_ping(mRoot.get()), STATUS_DEAD_OBJECT);
    EXPECT_EQ(Link(&mWatch), STATUS_DEAD_OBJECT);
    EXPECT_EQ(mWatch.unlinked, 3);
    EXPECT_EQ(LinkTo(nullptr, &mWatch), STATUS_UNEXPECTED_NULL);
    mRecipient.set(nullptr);
    EXPECT_EQ(Link(&mWatch), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(mWatch.died, 0);
}

TEST_F(DeathTest, UnlinkWhileDyingSaysSo) {
    std::promise<void> entered;
    std::promise<void> goOn;
    mWatch.onDied = [&] {
        entered.set_value();
        goOn.get_future().wait();
    };
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&mOther), STATUS_OK);
    mLoopback->Kill();
    entered.get_future().wait();
    EXPECT_EQ(Unlink(&mWatch), STATUS_NAME_NOT_FOUND);
    EXPECT_EQ(Unlink(&mOther), STATUS_DEAD_OBJECT);
    goOn.set_value();
    mLoopback->WaitForNotices();
    EXPECT_EQ(mOther.died, 1);
}

TEST_F(DeathTest, DeletedRecipientAndEndedProxyTakeTheirLinksAlong) {
    ASSERT_EQ(Visit(SharedRefBase::make<Peer>()), STATUS_OK);
    SpAIBinder visitor = mPeer->visitor->asBinder();
    ASSERT_EQ(LinkTo(visitor.get(), &mWatch), STATUS_OK);
    ASSERT_EQ(LinkTo(visitor.get(), &mWatch), STATUS_OK);
    mRecipient.set(nullptr);
    EXPECT_EQ(mWatch.unlinked, 2);
    SetRecipient();
    ASSERT_EQ(LinkTo(visitor.get(), &mWatch), STATUS_OK);
    visitor.set(nullptr);
    mPeer->visitor.reset();
    EXPECT_EQ(mWatch.unlinked, 3);
    KillAndWait();
    EXPECT_EQ(mWatch.died, 0);
}

TEST_F(DeathTest, LastLoopbackPointerMayGoInANoticeAndProxiesOutliveIt) {
    std::promise<void> killed;
    // The connection's thread is joined by nobody: what it tells last outlives this test.
    const auto over = std::make_shared<std::promise<void>>();
    mWatch.onDied = [&] {
        mLoopback->WaitForNotices();
        killed.get_future().wait();
        mLoopback.reset();
    };
    mOther.onOver = [over] { over->set_value(); };
    ASSERT_EQ(Link(&mWatch), STATUS_OK);
    ASSERT_EQ(Link(&mOther), STATUS_OK);
    mLoopback->Kill();
    killed.set_value();
    over->get_future().wait();
    EXPECT_EQ(mLoopback, nullptr);
    EXPECT_EQ(mOther.died, 1);
    EXPECT_EQ(Visit(), STATUS_DEAD_OBJECT);
}

/** Everything at once, for the thread sanitizer: each link still ends exactly once. */
TEST_F(DeathTest, CallsLinksAndDropsRaceAgainstKill) {
    for (int round = 0; round < 30; ++round) {
        std::mutex keptMutex;
        std::vector<std::shared_ptr<IPeer>> kept;
        Connect();
        mPeer->onVisit = [&](const auto& visitor, int32_t, std::string*) {
            const std::lock_guard lock(keptMutex);
            kept.push_back(visitor);
            if (kept.size() > 3) kept.erase(kept.begin());
            return ScopedAStatus::ok();
        };
        std::atomic<int> linked{0};
        const auto useUntilDead = [&] {
            binder_status_t status = STATUS_OK;
            while (status != STATUS_DEAD_OBJECT) {
                status = Visit(SharedRefBase::make<Peer>());
                EXPECT_TRUE(status == STATUS_OK || status == STATUS_DEAD_OBJECT) << status;
                mProxy->tell(1);
                Link(&mWatch);
                ++linked;
                Unlink(&mWatch);
                mLoopback->Root();
            }
        };
        const auto kill = [&] { mLoopback->Kill(); };
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back(useUntilDead);
        while (linked < 20)
            std::this_thread::yield();
        threads.emplace_back(kill);
        kill();
        for (auto& thread : threads)
            thread.join();
        mLoopback->WaitForNotices();
        EXPECT_EQ(mWatch.unlinked, linked);
        mWatch.unlinked = 0;
        // Handlers may still be inside.
        mLoopback.reset();
    }
}

}  // namespace
}  // namespace tests
