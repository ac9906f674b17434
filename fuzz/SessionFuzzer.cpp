// A session whose other end says anything, in both roles: every thread ends with the sockets, and
// nothing is left of it.

#include <sys/socket.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fuzz/Input.h"
#include "fuzz/Peer.h"
#include "host/binder/rpc/RpcClient.h"
#include "host/binder/rpc/RpcServer.h"

namespace {

using namespace zarvo::host;
using Bytes = std::span<const uint8_t>;

/** Says all of it and nothing more. */
void Say(const Socket& socket, Bytes bytes) {
    std::array part{iovec{const_cast<uint8_t*>(bytes.data()), bytes.size()}};
    socket.Send(part);
    shutdown(socket.Fd(), SHUT_WR);
}

/** Listens until the other end has hung up. */
void Listen(const Socket& socket) {
    std::array<uint8_t, 4096> heard{};
    while (socket.Receive(heard.data(), heard.size()) > 0) {
    }
}

/** A client's first words on a session's first socket, and its question how the session is called.
 */
void Greet(const Socket& socket) {
    wire::ConnectionHeader header{};
    header.version = wire::kNewestVersion;
    wire::Init init;
    wire::CommandHeader command{wire::kTransact, sizeof(wire::TransactBody), {}};
    wire::TransactBody body{};
    body.code = wire::kGetSessionId;
    std::array parts{iovec{&header, sizeof(header)}, iovec{&init, sizeof(init)},
                     iovec{&command, sizeof(command)}, iovec{&body, sizeof(body)}};
    socket.Send(parts);
}

/** The session that the answer tells. */
wire::SessionId Learn(const Socket& socket) {
    struct {
        wire::NewSession begun;
        wire::CommandHeader command;
        uint8_t reply[sizeof(wire::ReplyBody)];
        uint32_t idBytes;
    } answer{};
    wire::SessionId id{};
    static_assert(sizeof(answer) == 8 + 16 + 20 + 4);
    if (!socket.ReceiveAll(&answer, sizeof(answer)) || !socket.ReceiveAll(id.data(), id.size()))
        std::abort();
    return id;
}

/** One more socket of a session. */
void Join(const Socket& socket, wire::SessionId id, uint8_t options) {
    wire::ConnectionHeader header{};
    header.version = wire::kNewestVersion;
    header.options = options;
    header.sessionIdBytes = wire::kSessionIdBytes;
    std::array parts{iovec{&header, sizeof(header)}, iovec{id.data(), id.size()}};
    socket.Send(parts);
}

Socket Dial(RpcServer& server) {
    auto [near, far] = Socket::Pair();
    if (!near.IsOpen() || !server.Accept(std::move(far))) std::abort();
    return std::move(near);
}

/** A client that says anything from its first word on; or else, in a session that it began and on
 * a second socket of it. */
void FuzzServer(zarvo::fuzz::Input& input) {
    const auto peer = ndk::SharedRefBase::make<zarvo::fuzz::Peer>();
    const uint8_t kind = input.Take<uint8_t>();
    const auto server = std::make_shared<RpcServer>(
            RpcServer::Settings{.threads = 2, .acknowledgeWithReply = (kind & 1) != 0},
            Ref<AIBinder>::Share(peer->asBinder().get()));
    const Socket first = Dial(*server);
    Socket second;
    if ((kind & 2) != 0) {
        Greet(first);
        second = Dial(*server);
        Join(second, Learn(first), (kind & 4) != 0 ? wire::kIncoming : 0);
        Say(second, input.TakePiece());
    }
    Say(first, input.TakeRest());
    Listen(first);
    if (second.IsOpen()) Listen(second);
    server->Close();
    server->JoinThreads();
}

/** A server that says a piece of the input on each socket, whatever it hears. */
void FuzzClient(zarvo::fuzz::Input& input) {
    std::vector<Socket> servers;
    RpcClientSettings settings;
    settings.acknowledgeWithReply = input.Take<uint8_t>() % 2 != 0;
    settings.dial = [&](Deadline) {
        auto [near, far] = Socket::Pair();
        Say(far, input.TakePiece());
        servers.push_back(std::move(far));
        return std::move(near);
    };
    const auto session = ConnectRpc(settings);
    if (session == nullptr) return;
    zarvo::fuzz::Use(*session);
    session->Terminate();
    session->WaitForNotices();
    session->JoinThreads();
}

}  // namespace

/** The input is a byte that chooses the role, and what the other end says. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zarvo::fuzz::Input input(data, size);
    if (input.Take<uint8_t>() % 2 == 0) {
        FuzzServer(input);
    } else {
        FuzzClient(input);
    }
    return 0;
}
