#pragma once

#include <functional>
#include <memory>

#include "host/binder/rpc/RpcSession.h"

namespace zarvo::host {

/** How a client reaches a server, and what it wants of it. */
struct RpcClientSettings {
    /** Opens one more socket to the server; one that is not open, and errno says why, if it cannot
     * be reached until then. */
    std::function<Socket(Deadline)> dial;
    /** Sockets on which this end calls, at most; opened when they are needed. */
    size_t mostOutgoing = 10;
    uint32_t newestVersion = wire::kNewestVersion;
    bool acknowledgeWithReply = true;
    /** How long to wait for the server's answers. */
    Deadline deadline = Deadline::max();
};

/** Opens a session, on which this end is not called before RpcSession::OpenIncoming. Null if the
 * server cannot be reached, where errno is what `dial` left, or does not shake hands until the
 * deadline, where it is ETIMEDOUT. The deadline goes on for what is received on the session's
 * socket, until Channels::LimitReceiveTime says otherwise. */
ABINDER_API std::shared_ptr<RpcSession> ConnectRpc(const RpcClientSettings& settings);

/** The server's root, null if it has none or the session has ended. */
ABINDER_API Ref<AIBinder> AskRoot(RpcSession& session);

}  // namespace zarvo::host
