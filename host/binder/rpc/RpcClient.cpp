#include "host/binder/rpc/RpcClient.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zarvo::host {

namespace {

/** Opens further sockets of one session. */
struct Opener {
    std::function<Socket()> dial;
    uint32_t version;
    wire::SessionId id;

    std::shared_ptr<Connection> Dial(uint8_t options, bool sendsInit) {
        Socket socket = dial();
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
    std::shared_ptr<Connection> Outgoing() { return Dial(0, true); }
    std::shared_ptr<Connection> Incoming() {
        auto connection = Dial(wire::kIncoming, false);
        wire::Init init;
        if (connection == nullptr || !connection->Receive(&init)) return nullptr;
        return init.text == wire::Init().text ? connection : nullptr;
    }
};

/** The first socket of a session, and the version agreed on; null if there is none. */
std::shared_ptr<Connection> Greet(Socket socket, uint32_t newestVersion, uint32_t* version) {
    if (!socket.IsOpen()) return nullptr;
    auto connection = std::make_shared<Connection>(std::move(socket));
    wire::ConnectionHeader header{};
    header.version = newestVersion;
    wire::Init init;
    std::array parts{iovec{&header, sizeof(header)}, iovec{&init, sizeof(init)}};
    wire::NewSession answer{};
    if (!connection->Send(parts) || !connection->Receive(&answer)) return nullptr;
    *version = answer.version;
    return answer.version <= newestVersion ? connection : nullptr;
}

bool ReadId(const AParcel& reply, wire::SessionId* id) {
    uint32_t length = 0;
    if (reply.Read(&length) != STATUS_OK || length != id->size()) return false;
    const uint8_t* const bytes = reply.Take(id->size());
    if (bytes == nullptr) return false;
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

}  // namespace

std::shared_ptr<RpcSession> ConnectRpc(const RpcClientSettings& settings) {
    RpcSession::Settings setup;
    setup.acknowledgeWithReply = settings.acknowledgeWithReply;
    auto first = Greet(settings.dial(), settings.newestVersion, &setup.version);
    if (first == nullptr) return nullptr;
    auto session = std::make_shared<RpcSession>(setup);
    session->Outgoing().Add(std::move(first), [] { return true; });
    Opener opener{settings.dial, setup.version, {}};
    uint32_t threads = 0;
    if (!Introduce(*session, &threads, &opener.id)) {
        session->Terminate();
        return nullptr;
    }
    session->Outgoing().SetGrowth(
            [opener]() mutable { return opener.Outgoing(); },
            [self = session.get()](Connection& opened) { return self->IsTaken(opened); },
            std::min<size_t>(threads, settings.mostOutgoing));
    session->SetIncoming([opener]() mutable { return opener.Incoming(); });
    return session;
}

Ref<AIBinder> AskRoot(RpcSession& session) {
    const std::unique_ptr<AParcel> reply = session.NewReply();
    AIBinder* root = nullptr;
    if (session.Ask(wire::kGetRoot, reply.get()) != STATUS_OK) return {};
    return reply->ReadObject(&root) == STATUS_OK ? Ref<AIBinder>::Adopt(root) : Ref<AIBinder>();
}

}  // namespace zarvo::host
