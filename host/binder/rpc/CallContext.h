#pragma once

#include "host/binder/Session.h"
#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

/**
 * Marks what this thread does for a session: it serves a call of the other end, or waits for the
 * reply to one of its own. Lives on the stack of that thread; contexts nest.
 */
class CallContext {
  public:
    enum class Role { kServes, kServesOneway, kCalls };

    CallContext(const Session* session, Connection* connection, Role role);
    ~CallContext();
    CallContext(const CallContext&) = delete;
    CallContext& operator=(const CallContext&) = delete;

    /** The innermost call that this thread serves, null for none. */
    static const CallContext* Served();
    /** The connection on which the other end of that session waits for this very thread, so that it
     * takes calls there; null if it does not. */
    static Connection* WaitingCaller(const Session* session);
    /** How many calls this thread serves, one inside the other. */
    static int Depth();

    const PeerProcess& Caller() const { return mConnection->Peer(); }

  private:
    const Session* const mSession;
    Connection* const mConnection;
    const Role mRole;
    const CallContext* const mOuter;
    const int mDepth;
};

}  // namespace zarvo::host
