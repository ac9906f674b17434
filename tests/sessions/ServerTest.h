#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "host/binder/rpc/RpcClient.h"
#include "host/binder/rpc/RpcServer.h"
#include "tests/binder/Hex.h"
#include "tests/binder/Peer.h"

namespace tests {

using ::zarvo::host::AskRoot;
using ::zarvo::host::ConnectRpc;
using ::zarvo::host::Ref;
using ::zarvo::host::RpcServer;
using ::zarvo::host::RpcSession;
using ::zarvo::host::Socket;
namespace wire = ::zarvo::host::wire;

// Messages of a client, as hexadecimal text.

inline const std::string kZeros(64, '0');
inline const std::string kHello = "01000000 00 00 0000000000000000 0000";
inline const std::string kInit = "63636900 00000000";
inline const std::string kSpecial = "0000000000000000";
inline const std::string kRoot = "0300000000000000";

inline std::string U32(uint32_t value) {
    return Hex(std::span(reinterpret_cast<const uint8_t*>(&value), sizeof(value)));
}
inline std::string Command(uint32_t command, uint32_t bodyBytes) {
    return U32(command) + U32(bodyBytes) + kZeros.substr(0, 16);
}
inline std::string Call(const std::string& address, uint32_t code, const std::string& parcel = "",
                        uint32_t flags = 0, uint32_t number = 0) {
    const auto bytes = static_cast<uint32_t>(BytesOf(parcel).size());
    return Command(0, 40 + bytes) + address + U32(code) + U32(flags) + U32(number) + U32(0) +
           U32(bytes) + kZeros.substr(0, 24) + parcel;
}

inline void Send(const Socket& socket, const std::string& hex) {
    std::vector<uint8_t> bytes = BytesOf(hex);
    std::array part{iovec{bytes.data(), bytes.size()}};
    socket.Send(part);
}
inline std::string Receive(const Socket& socket, size_t length) {
    std::vector<uint8_t> bytes(length);
    return socket.ReceiveAll(bytes.data(), length) ? Hex(bytes) : "closed";
}
/** A reply without fault. */
inline std::string Reply(const std::string& parcel) {
    const auto bytes = static_cast<uint32_t>(BytesOf(parcel).size());
    return Command(1, 20 + bytes) + U32(0) + U32(bytes) + kZeros.substr(0, 24) + parcel;
}
/** The peer's descriptor, with which its calls begin. */
inline const std::string kPeerToken = "0b000000 740065007300740073002e0049005000650065007200 0000";

/** A server with a peer as root, and sockets to it. */
class ServerTest : public testing::Test {
  protected:
    ~ServerTest() override {
        mServer->Close();
        mServer->JoinThreads();
    }

    Socket Dial() {
        auto [near, far] = Socket::Pair();
        mServer->Accept(std::move(far));
        return std::move(near);
    }
    /** A session that has the root. */
    Socket Greeted() {
        Socket socket = Dial();
        Send(socket, kHello + kInit + Call(kSpecial, wire::kGetRoot));
        EXPECT_EQ(Receive(socket, 8), "0100000000000000");
        EXPECT_EQ(Receive(socket, 16 + 20 + 16).substr(80, 16), kRoot);
        return socket;
    }
    /** Whether another client is served as if nothing were. */
    bool ServesTheNext() {
        const auto session = ConnectRpc({.dial = [this](auto) { return Dial(); }});
        const ndk::SpAIBinder root(session == nullptr ? nullptr : AskRoot(*session).Release());
        return AIBinder_ping(root.get()) == STATUS_OK;
    }

    const std::shared_ptr<Peer> mPeer = SharedRefBase::make<Peer>();
    const std::shared_ptr<RpcServer> mServer = std::make_shared<RpcServer>(
            RpcServer::Settings{.threads = 2}, Ref<AIBinder>::Share(mPeer->asBinder().get()));
};

}  // namespace tests
