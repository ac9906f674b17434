#include <atomic>
#include <thread>

#include "tests/sessions/ServerTest.h"

namespace tests {
namespace {

using ::zarvo::host::RpcClientSettings;

/** Sessions of our own client's end, which nobody calls unasked. */
class SessionTest : public ServerTest {
  protected:
    std::shared_ptr<IPeer> Connect(RpcClientSettings settings = {}) {
        settings.dial = [this](auto) { return Dial(); };
        mSession = ConnectRpc(settings);
        return mSession == nullptr ? nullptr : RootOf(*mSession);
    }

    std::shared_ptr<RpcSession> mSession;
};

TEST_F(SessionTest, SpeaksTheOldVersionWithWhoKnowsNoOther) {
    Server old({.newestVersion = 0}, mPeer->asBinder().get());
    for (const bool isOldServer : {false, true}) {
        SCOPED_TRACE(isOldServer);
        RpcClientSettings settings;
        settings.newestVersion = isOldServer ? 1 : 0;
        settings.dial = [&](auto) { return (isOldServer ? old : mServer).Dial(); };
        const auto session = ConnectRpc(settings);
        ASSERT_NE(session, nullptr);
        EXPECT_EQ(session->Setup().version, 0U);
        std::string text;
        EXPECT_TRUE(RootOf(*session)->visit(SharedRefBase::make<Peer>(), 5, &text).isOk());
        EXPECT_EQ(text, "5");
    }
}

TEST_F(SessionTest, LivesOnWithoutTheSocketsThatTheServerRefuses) {
    std::atomic<int> dialled{0};
    const auto session = ConnectRpc({.dial = [&](auto) {
        if (dialled++ == 0) return Dial();
        return Socket::Pair().first;
    }});
    mPeer->onVisit = [&](const auto&, int32_t, std::string*) {
        // The other caller wants a socket of his own.
        while (dialled < 2)
            std::this_thread::yield();
        return ScopedAStatus::ok();
    };
    const auto root = RootOf(*session);
    const auto visit = [&] {
        std::string text;
        EXPECT_TRUE(root->visit(nullptr, 5, &text).isOk());
    };
    std::thread other(visit);
    visit();
    other.join();
    visit();
    EXPECT_EQ(dialled, 2);
}

TEST_F(SessionTest, CarriesMessagesUpToTheLimitAndRefusesLongerOnes) {
    const auto root = Connect();
    const auto visit = [&](size_t requestBytes, size_t textLength) {
        mPeer->onVisit = [=](const auto&, int32_t, std::string* text) {
            text->assign(textLength, 'a');
            return ScopedAStatus::ok();
        };
        AParcel* in = nullptr;
        ScopedAParcel out;
        AIBinder_prepareTransaction(root->asBinder().get(), &in);
        IPeer::writeToParcel(in, nullptr);
        AParcel_writeInt32(in, 0);
        AParcel_setDataPosition(in, static_cast<int32_t>(requestBytes) - 4);
        AParcel_writeInt32(in, 0);
        return AIBinder_transact(root->asBinder().get(), 1, &in, out.getR(), 0);
    };
    // A reply is a status, a count, and the text with its end, two bytes each.
    const size_t longest = (wire::kMostParcelBytes - 8) / 2 - 1;
    EXPECT_EQ(visit(wire::kMostParcelBytes, longest), STATUS_OK);
    EXPECT_EQ(visit(wire::kMostParcelBytes + 4, 0), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(visit(100, longest + 1), STATUS_FAILED_TRANSACTION);
    EXPECT_EQ(visit(100, 0), STATUS_OK);
}

TEST_F(SessionTest, ManyOnewayCallsRunInOrderOnOneThreadAndDoNotStopBothEnds) {
    const auto root = Connect();
    std::atomic<int32_t> told{0};
    std::thread::id servedBy;
    mPeer->onTell = [&](int32_t number) {
        if (number == 0) servedBy = std::this_thread::get_id();
        EXPECT_EQ(std::this_thread::get_id(), servedBy);
        EXPECT_EQ(told++, number);
    };
    // More than the sockets hold, by far.
    constexpr int32_t kMany = 10'000;
    for (int32_t i = 0; i < kMany; ++i)
        ASSERT_TRUE(root->tell(i).isOk());
    while (told < kMany)
        ASSERT_EQ(AIBinder_ping(root->asBinder().get()), STATUS_OK);
}

TEST_F(SessionTest, ObjectThatEndsInsideACallMayCall) {
    const auto root = Connect();
    auto visitor = SharedRefBase::make<Peer>();
    std::string last;
    visitor->onEnd = [&] { EXPECT_TRUE(root->visit(nullptr, 7, &last).isOk()); };
    std::string text;
    EXPECT_TRUE(root->visit(visitor, 5, &text).isOk());
    visitor.reset();
    // What lets go of the visitor comes with the reply.
    EXPECT_TRUE(root->visit(nullptr, 6, &text).isOk());
    EXPECT_EQ(text, "6");
    EXPECT_EQ(AIBinder_ping(root->asBinder().get()), STATUS_OK);
    EXPECT_EQ(last, "7");
}

TEST_F(SessionTest, HoldsAnObjectWhileACallMayBeOnItsWay) {
    struct Case {
        bool tells;
        bool isAcknowledged;
    };
    const std::string acknowledgement = Command(2, 16) + kRoot + U32(1) + U32(0);
    const std::string refusal =
            Command(1, 20) + U32(static_cast<uint32_t>(STATUS_BAD_VALUE)) + kZeros.substr(0, 32);
    // What the server says, whatever it is asked.
    const std::string greeting = "0100000000000000" + Reply(U32(1)) + Reply(U32(32) + kZeros) +
                                 Reply(U32(1) + kRoot + U32(12)) + acknowledgement +
                                 Reply(kPeerToken);
    for (const auto& [tells, isAcknowledged] :
         {Case{false, false}, Case{false, true}, Case{true, false}, Case{true, true}}) {
        SCOPED_TRACE(testing::Message() << tells << isAcknowledged);
        auto [near, far] = Socket::Pair();
        Send(far, greeting + (isAcknowledged ? acknowledgement : "") + refusal);
        const auto session =
                ConnectRpc({.dial = [&, &socket = near](auto) { return std::move(socket); }});
        auto root = RootOf(*session);
        ASSERT_NE(root, nullptr);
        if (tells) {
            EXPECT_TRUE(root->tell(1).isOk());
        }
        EXPECT_EQ(AIBinder_ping(root->asBinder().get()), STATUS_BAD_VALUE);
        root.reset();
        // A session in which nothing is held has ended.
        EXPECT_EQ(session->IsAlive(), tells);
        session->Terminate();
    }
}

TEST_F(SessionTest, AcknowledgesAllThatACallBroughtBeforeItsReply) {
    constexpr int kMany = 40;
    static const AIBinder_Class* const reader = AIBinder_Class_define(
            "tests.IPeer", [](void*) -> void* { return nullptr; }, [](void*) {},
            [](AIBinder*, transaction_code_t, const AParcel* in, AParcel*) {
                binder_status_t status = STATUS_OK;
                for (int i = 0; i < kMany && status == STATUS_OK; ++i) {
                    SpAIBinder object;
                    status = AParcel_readStrongBinder(in, object.getR());
                }
                return status;
            });
    const SpAIBinder root(AIBinder_new(reader, nullptr));
    Server server({}, root.get());
    const Socket socket = server.Dial();
    std::string parcel = kPeerToken;
    std::string acknowledgements;
    for (int i = 0; i < kMany; ++i) {
        parcel += U32(1) + kRoot + U32(12);
        // With the first, also the call itself.
        acknowledgements += Command(2, 16) + kRoot + U32(i == 0 ? 2 : 1) + U32(0);
    }
    Send(socket, kHello + kInit + Call(kSpecial, wire::kGetRoot) + Call(kRoot, 1, parcel));
    Receive(socket, 8 + 52);
    EXPECT_EQ(Receive(socket, 32 * kMany), acknowledgements);
    EXPECT_EQ(Receive(socket, 36), Reply(""));
}

TEST_F(SessionTest, AcknowledgesFailedCallsWithTheNextThatSucceeds) {
    Server server({.acknowledgeWithReply = false}, mPeer->asBinder().get());
    const Socket socket = server.Dial();
    const std::string ping = Call(kRoot, 0x5F504E47);
    Send(socket, kHello + kInit + Call(kSpecial, wire::kGetRoot) + Call(kRoot, 0) + Call(kRoot, 0) +
                         ping + Call(kRoot, 0) + ping);
    Receive(socket, 8 + 52 + 2 * 36);
    const auto acknowledgement = [](uint32_t amount) {
        return Command(2, 16) + kRoot + U32(amount) + U32(0);
    };
    EXPECT_EQ(Receive(socket, 36 + 32), acknowledgement(3) + Reply(""));
    EXPECT_EQ(Receive(socket, 36 + 32 + 36).substr(72), acknowledgement(2) + Reply(""));
}

}  // namespace
}  // namespace tests
