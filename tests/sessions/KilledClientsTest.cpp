#include <unistd.h>

#include <random>
#include <thread>

#include "tests/sessions/ServerTest.h"
#include "tests/support/Holdings.h"

namespace tests {
namespace {

using ::zarvo::test::Holdings;

/** Clients that are killed: their sockets end, wherever they were. */
class KilledClients : public ServerTest {
  protected:
    KilledClients() {
        mPeer->onVisit = [this](const auto& visitor, int32_t number, std::string* text) {
            if (visitor == nullptr) return ScopedAStatus::ok();
            AIBinder_linkToDeath(visitor->asBinder().get(), mRecipient.get(), this);
            ++mLinked;
            return visitor->visit(nullptr, number, text);
        };
        AIBinder_DeathRecipient_setOnUnlinked(mRecipient.get(), Unlinked);
    }

    /** A socket that the server takes, now or when it has let others go. */
    Socket Enter() {
        while (true) {
            auto [near, far] = Socket::Pair();
            if (mServer.Accept(std::move(far))) return std::move(near);
            std::this_thread::yield();
        }
    }
    static void Unlinked(void* cookie) { ++static_cast<KilledClients*>(cookie)->mUnlinked; }

    const ndk::ScopedAIBinder_DeathRecipient mRecipient{AIBinder_DeathRecipient_new([](void*) {})};
    std::atomic<int> mLinked{0};
    std::atomic<int> mUnlinked{0};
};

TEST_F(KilledClients, LeaveNothingBehindWhereverTheyWere) {
    const std::string visitor = "01000000 0100000000000000 0c000000";
    const std::string visit = Call(kRoot, 1, kPeerToken + visitor + U32(5));
    // The replies to what the visitor is asked: its name, and to visit.
    const std::string nameReply = Reply(kPeerToken);
    const std::string visitReply = Reply(U32(0) + U32(0) + U32(0));
    const std::string life = kHello + kInit + Call(kSpecial, wire::kGetRoot) + visit + nameReply +
                             visitReply + Call(kRoot, 3, kPeerToken + U32(1), 1, 0) +
                             Call(kRoot, 3, kPeerToken + U32(3), 1, 2) + visit + visitReply;
    std::vector<uint8_t> bytes = BytesOf(life);
    // With the first thread the sanitizer starts one of its own.
    std::thread([] {}).join();
    const auto before = Holdings::Of(getpid());
    std::minstd_rand random(7);
    for (int i = 0; i < 1000; ++i) {
        const Socket client = Enter();
        // Some live to the end, for that they were made to be served at all.
        const size_t length = i % 8 == 0 ? bytes.size() : random() % bytes.size();
        std::array part{iovec{bytes.data(), length}};
        client.Send(part);
        if (i % 4 == 0) continue;
        // Some are told of their session, and let themselves be called.
        Socket calling = Enter();
        Send(calling, kHello + kInit + Call(kSpecial, wire::kGetSessionId));
        const std::string id = Receive(calling, 8 + 16 + 20 + 4 + 32).substr(96);
        const Socket called = Enter();
        Send(called, "01000000 01 00 0000000000000000 2000" + id);
        if (i % 4 == 1) calling = {};
        if (i % 4 == 2) Receive(called, 8);
    }
    EXPECT_TRUE(ServesTheNext());
    while (!Holdings::Of(getpid()).IsWithin(before))
        std::this_thread::yield();
    EXPECT_GT(mLinked, 100);
    while (mUnlinked != mLinked)
        std::this_thread::yield();
}

}  // namespace
}  // namespace tests
