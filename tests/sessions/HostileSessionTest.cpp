#include <poll.h>
#include <unistd.h>

#include "tests/sessions/ServerTest.h"

namespace tests {
namespace {

class HostileSession : public ServerTest {
  protected:
    static std::string IdOf(const Socket& session) {
        Send(session, Call(kSpecial, wire::kGetSessionId));
        return Receive(session, 16 + 20 + 4 + 32).substr(80);
    }
    static std::string Tell(uint32_t number) {
        return Call(kRoot, 3, kPeerToken + U32(number), 1, number);
    }
    /** Opens a thousand connections and says `hello` on each; those that were taken. */
    std::vector<Socket> Crowd(const std::string& hello) {
        std::vector<Socket> crowd;
        for (int i = 0; i < 1000; ++i) {
            auto [near, far] = Socket::Pair();
            const bool isTaken = mServer.Accept(std::move(far));
            Send(near, hello);
            if (isTaken) crowd.push_back(std::move(near));
        }
        return crowd;
    }
};

TEST_F(HostileSession, IsNotBegunByWhatIsNoGreeting) {
    const std::string unknownId = "01000000 00 00 0000000000000000 2000" + kZeros;
    const std::string greetings[] = {
            "01000000 00 00 0000000000000000 0700",
            unknownId + kInit,
            kHello + "63636a00 00000000",
            "01000000 01 00 0000000000000000 0000" + kInit,
            "01000000 00 01 0000000000000000 0000" + kInit,
    };
    for (const std::string& greeting : greetings) {
        SCOPED_TRACE(greeting);
        const Socket socket = Dial();
        Send(socket, greeting);
        Receive(socket, 8);  // some are answered first
        EXPECT_EQ(Receive(socket, 1), "closed");
    }
    EXPECT_TRUE(ServesTheNext());
}

TEST_F(HostileSession, EndsForWhatIsNoMessage) {
    const std::string messages[] = {
            Command(0, 39) + kZeros + kZeros,
            Command(0, 0xFFFFFFFF),
            Command(0, 40 + (4U << 20U) + 4) + kRoot,
            Command(0, 40) + kRoot + U32(1) + U32(0) + kZeros.substr(0, 16) + U32(4) +
                    kZeros.substr(0, 24),
            Command(0, 43) + kRoot + U32(1) + U32(0) + kZeros.substr(0, 16) + U32(0) +
                    kZeros.substr(0, 24) + "000000",
            Command(1, 20) + kZeros,
            Command(2, 12) + kZeros,
            Command(3, 0),
            "ffffffffffffffffffffffffffffffff",
            Call("0300000007000000", 1),
            Call("0100000000000000", 1),
    };
    for (const std::string& message : messages) {
        SCOPED_TRACE(message.substr(0, 160));
        const Socket socket = Greeted();
        Send(socket, message);
        EXPECT_EQ(Receive(socket, 1), "closed");
    }
    EXPECT_EQ(mPeer->visits, 0);
    EXPECT_TRUE(ServesTheNext());
}

TEST_F(HostileSession, LivesOnAfterWhatIsOnlyRefused) {
    struct Case {
        std::string message;
        int32_t status;
        bool isAcknowledged = false;
    };
    const Case cases[] = {
            {Call(kSpecial, 7), STATUS_UNKNOWN_TRANSACTION},
            {Call(kRoot, 0), STATUS_UNKNOWN_TRANSACTION, true},
            // Tokens of no interface.
            {Call(kRoot, 1), STATUS_BAD_TYPE, true},
            {Call(kRoot, 1, "ffffffff"), STATUS_BAD_TYPE, true},
            {Call(kRoot, 1, "0b000000"), STATUS_BAD_TYPE, true},
            {Call(kRoot, 1, "0b000000540065007300740073002e00490050006500650072000000 0000"),
             STATUS_BAD_TYPE, true},
            {Call(kRoot, 1, "00000080ffffffff4e4b4e55"), STATUS_BAD_TYPE, true},
            {Call("0500000000000000", 1), STATUS_BAD_VALUE},
            {Call("0000000001000000", 1), STATUS_BAD_VALUE},
            {Command(0, 44) + kRoot + U32(1) + U32(0) + kZeros.substr(0, 16) + U32(0) +
                     kZeros.substr(0, 24) + "00000000",
             STATUS_BAD_VALUE},
            // Acknowledges what was never sent, and more than was sent.
            {Command(2, 16) + "0100000009000000" + U32(1) + U32(0) + Command(2, 16) + kRoot +
                     U32(9) + U32(0) + Call(kRoot, 1),
             STATUS_BAD_TYPE, true},
    };
    const Socket socket = Greeted();
    for (const Case& refused : cases) {
        SCOPED_TRACE(refused.message);
        Send(socket, refused.message);
        if (refused.isAcknowledged) {
            EXPECT_EQ(Receive(socket, 32), Command(2, 16) + kRoot + U32(1) + U32(0));
        }
        EXPECT_EQ(Receive(socket, 36), Command(1, 20) + U32(static_cast<uint32_t>(refused.status)) +
                                               kZeros.substr(0, 32));
    }
}

TEST_F(HostileSession, RunsOnewayCallsInTheOrderOfTheirNumbers) {
    std::vector<int32_t> told;
    mPeer->onTell = [&](int32_t number) { told.push_back(number); };
    const Socket socket = Greeted();
    // Number 1 is late, 0 comes again.
    Send(socket, Tell(0) + Tell(2) + Tell(3) + Tell(1) + Tell(0) + Call(kRoot, 0x5F504E47));
    EXPECT_NE(Receive(socket, 3 * 32), "closed");
    EXPECT_EQ(told, (std::vector<int32_t>{0, 1, 2, 3}));
}

TEST_F(HostileSession, MayRepeatTheNumberOfAOnewayCallThatRuns) {
    const Socket socket = Greeted();
    const Socket second = Dial();
    Send(second, "01000000 00 00 0000000000000000 2000" + IdOf(socket) + kInit);
    std::vector<int32_t> told;
    mPeer->onTell = [&](int32_t number) {
        told.push_back(number);
        if (number != 0) return;
        Send(second, Tell(0) + Call(kSpecial, 7));
        EXPECT_NE(Receive(second, 36), "closed");
    };
    Send(socket, Tell(0) + Tell(1) + Call(kSpecial, 7));
    // As much as comes even if 1 waits for ever.
    EXPECT_NE(Receive(socket, 36 + 32), "closed");
    EXPECT_EQ(told, (std::vector<int32_t>{0, 1}));
}

TEST_F(HostileSession, ThatReadsNothingHoldsUpNobodyElse) {
    auto [session, far] = Socket::Pair();
    const ndk::ScopedFileDescriptor serversEnd(dup(far.Fd()));
    mServer.Accept(std::move(far));
    Send(session, kHello + kInit + Call(kSpecial, wire::kGetRoot));
    std::vector<uint8_t> ping = BytesOf(Call(kRoot, 0x5F504E47));
    // Until the server has no room for replies, nor this end for calls.
    pollfd room{.fd = serversEnd.get(), .events = POLLOUT, .revents = 0};
    bool isFull = false;
    while (!isFull || poll(&room, 1, 0) > 0) {
        std::array part{iovec{ping.data(), ping.size()}};
        std::span<iovec> unsent = part;
        ASSERT_TRUE(session.SendSome(&unsent));
        isFull = !unsent.empty();
        // Half a call would be the beginning of the next.
        ASSERT_TRUE(!isFull || part.front().iov_len == ping.size());
    }
    EXPECT_TRUE(ServesTheNext());
}

TEST_F(HostileSession, LetsGoOfAThousandThatSayNothing) {
    std::vector<Socket> silent = Crowd("");
    EXPECT_GT(silent.size(), 0U);
    EXPECT_LT(silent.size(), 200U);
    silent.clear();
    while (!ServesTheNext())
        std::this_thread::yield();
}

TEST_F(HostileSession, MayNotHoardConnectionsToBeCalledOn) {
    const Socket session = Greeted();
    const std::string id = IdOf(session);
    const auto hoard = Crowd("01000000 01 00 0000000000000000 2000" + id);
    EXPECT_GT(hoard.size(), 0U);
    EXPECT_LT(hoard.size(), 200U);
    Send(session, Call(kRoot, 0x5F504E47));
    EXPECT_NE(Receive(session, 36), "closed");
}

}  // namespace
}  // namespace tests
