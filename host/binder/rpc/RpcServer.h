#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include "host/binder/rpc/Admission.h"
#include "host/binder/rpc/RpcSession.h"

namespace zarvo::host {

/**
 * The serving side of sessions: takes connected sockets, shakes hands, and keeps the sessions that
 * come of it until they end. Each socket on which the other end calls has a thread of its own; who
 * does not shake hands within a few seconds, or comes when there are too many, is let go.
 *
 * Held by these threads, by sessions weakly. Thread-safe.
 */
class ABINDER_API RpcServer : public std::enable_shared_from_this<RpcServer> {
  public:
    struct Settings {
        /** Sockets on which one client may call at the same time. */
        uint32_t threads = 1;
        uint32_t newestVersion = wire::kNewestVersion;
        bool acknowledgeWithReply = true;
    };

    RpcServer(Settings settings, Ref<AIBinder> root);
    /** Close() must have been called. */
    ~RpcServer();
    RpcServer(const RpcServer&) = delete;
    RpcServer& operator=(const RpcServer&) = delete;

    /** Takes a socket that another end opened; false, and the socket is closed, if there are too
     * many, or no thread for it, or after Close. */
    bool Accept(Socket socket);
    std::vector<std::shared_ptr<RpcSession>> Sessions() const;

    /** Lets the root go and ends all sessions; takes no sockets any more. */
    void Close();
    /** After Close: waits for all threads but this one, and until every death notice has been
     * given; in one, for the others. */
    void JoinThreads();

  private:
    struct Entry {
        std::weak_ptr<RpcSession> session;
        /** Connections the client may call on. */
        uint32_t serving = 0;
    };
    using Shared = std::shared_ptr<Connection>;

    void Greet(const Shared& connection);
    void GreetNew(const Shared& connection, const wire::ConnectionHeader& header);
    void GreetKnown(const Shared& connection, const wire::ConnectionHeader& header);
    std::shared_ptr<RpcSession> NewSession(uint32_t version);
    /** The session, counting one more serving connection if `serves`; null if there is none, or
     * it has enough. */
    std::shared_ptr<RpcSession> Find(const wire::SessionId& id, bool serves);
    void Forget(const wire::SessionId& id);
    Ref<AIBinder> Root() const;
    /** Lists a connection that is to shake hands; false after Close. */
    bool Enter(const Shared& connection);
    void Greeted(const Shared& connection);

    const Settings mSettings;
    Admission mAdmission;
    ThreadSet mThreads;

    mutable std::mutex mMutex;
    // All of the following: mMutex.
    Ref<AIBinder> mRoot;
    bool mClosed = false;
    std::set<Shared> mGreeting;
    std::map<wire::SessionId, Entry> mSessions;
    /** May still give notices. */
    std::vector<std::weak_ptr<RpcSession>> mEnded;
};

}  // namespace zarvo::host
