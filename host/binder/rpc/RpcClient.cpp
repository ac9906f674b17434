#include "host/binder/rpc/RpcClient.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace zarvo::host {

namespace {

/** To reach a server that has let this process in before. */
constexpr std::chrono::seconds kDialTime{5};

/** Opens further sockets of one session. */
struct Opener {
    std::function<Socket(Deadline)> dial;
    uint32_t version;
    wire::SessionId id;

    std::shared_ptr<Connection> Dial(uint8_t options, bool sendsInit, Deadline deadline) {
        Socket socket = dial(deadline);
        if (!socket.IsOpen()) return nullptr;
        auto connection = std::make_shared<Connection>(std::move(socket));
        wire::ConnectionHeader header{};
        header.version = version;
        header.options = options;
        header.sessionIdBytes = wire::kSessionIdBytes;
        wire::Init init;
        std::array parts{iovec{&header, sizeof(header)}, iovec{id.data(), id.size()},
                         iovec{&init, sendsInit ? sizeof(init) : 0}};
        return connection->Send(parts) ? connection : nullptr;
    }
    std::shared_ptr<Connection> Outgoing() {
        return Dial(0, true, std::chrono::steady_clock::now() + kDialTime);
    }
    std::shared_ptr<Connection> Incoming(Deadline deadline) {
        auto connection = Dial(wire::kIncoming, false, deadline);
        if (connection == nullptr) return nullptr;
        wire::Init init;
        connection->LimitReceiveTime(deadline);
        if (!connection->Receive(&init)) return nullptr;
        connection->LimitReceiveTime(Deadline::max());
        return init.text == wire::Init().text ? connection : nullptr;
    }
};

/** The first words on a session's first socket, and the version agreed on. */
bool Greet(Connection& connection, uint32_t newestVersion, uint32_t* version) {
    wire::ConnectionHeader header{};
    header.version = newestVersion;
    wire::Init init;
    std::array parts{iovec{&header, sizeof(header)}, iovec{&init, sizeof(init)}};
    wire::NewSession answer{};
    if (!connection.Send(parts) || !connection.Receive(&answer)) return false;
    *version = answer.version;
    return answer.version <= newestVersion;
}

bool ReadId(const AParcel& reply, wire::SessionId* id) {
    uint32_t length = 0;
    if (reply.Read(&length) != STATUS_OK || length != id->size()) return false;
    const uint8_t* bytes = nullptr;
    if (reply.Take(id->size(), &bytes) != STATUS_OK) return false;
    std::copy_n(bytes, id->size(), id->begin());
    return true;
}

/** Learns how many sockets the server takes and how the session is called. */
bool Introduce(RpcSession& session, uint32_t* threads, wire::SessionId* id) {
    AParcel reply;
    if (session.Ask(wire::kGetMaxThreads, &reply) != STATUS_OK) return false;
    if (reply.Read(threads) != STATUS_OK) return false;
    return session.Ask(wire::kGetSessionId, &reply) == STATUS_OK && ReadId(reply, id);
}

/** A session with its first socket; null if the server does not want one. */
std::shared_ptr<RpcSession> Begin(const RpcClientSettings& settings, Socket socket) {
    RpcSession::Settings setup;
    setup.acknowledgeWithReply = settings.acknowledgeWithReply;
    const auto first = std::make_shared<Connection>(std::move(socket));
    first->LimitReceiveTime(settings.deadline);
    if (!Greet(*first, settings.newestVersion, &setup.version)) return nullptr;
    auto session = std::make_shared<RpcSession>(setup);
    session->Outgoing().Add(first, [] { return true; });
    session->Outgoing().LimitReceiveTime(settings.deadline);
    return session;
}

}  // namespace

std::shared_ptr<RpcSession> ConnectRpc(const RpcClientSettings& settings) {
    Socket socket = settings.dial(settings.deadline);
    if (!socket.IsOpen()) return nullptr;
    auto session = Begin(settings, std::move(socket));
    Opener opener{settings.dial, 0, {}};
    uint32_t threads = 0;
    if (session == nullptr || !Introduce(*session, &threads, &opener.id)) {
        if (session != nullptr) session->Terminate();
        errno = ETIMEDOUT;
        return nullptr;
    }
    opener.version = session->Setup().version;
    session->Outgoing().SetGrowth(
            [opener]() mutable { return opener.Outgoing(); },
            [self = session.get()](Connection& opened) { return self->IsTaken(opened); },
            std::min<size_t>(threads, settings.mostOutgoing));
    session->SetIncoming(opener.id,
                         [opener](Deadline deadline) mutable { return opener.Incoming(deadline); });
    return session;
}

Ref<AIBinder> AskRoot(RpcSession& session) {
    const std::unique_ptr<AParcel> reply = session.NewReply();
    AIBinder* root = nullptr;
    if (session.Ask(wire::kGetRoot, reply.get()) != STATUS_OK) return {};
    return reply->ReadObject(&root) == STATUS_OK ? Ref<AIBinder>::Adopt(root) : Ref<AIBinder>();
}

}  // namespace zarvo::host
