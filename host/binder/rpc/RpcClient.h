#pragma once

#include <functional>
#include <memory>

#include "host/binder/rpc/RpcSession.h"

namespace zarvo::host {

/** How a client reaches a server, and what it wants of it. */
struct RpcClientSettings {
    /** Opens one more socket to the server; one that is not open if it cannot be reached. */
    std::function<Socket()> dial;
    /** Sockets on which this end calls, at most; opened when they are needed. */
    size_t mostOutgoing = 10;
    uint32_t newestVersion = wire::kNewestVersion;
    bool acknowledgeWithReply = true;
};

/** Opens a session, on which this end is not called before RpcSession::OpenIncoming; null if the
 * server is not there or does not shake hands. Waits for the server's answers. */
ABINDER_API std::shared_ptr<RpcSession> ConnectRpc(const RpcClientSettings& settings);

/** The server's root, null if it has none or the session has ended. */
ABINDER_API Ref<AIBinder> AskRoot(RpcSession& session);

}  // namespace zarvo::host
