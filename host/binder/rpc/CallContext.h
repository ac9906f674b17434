#pragma once

#include "host/binder/Session.h"
#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

/**
 * Marks that this thread serves a call that came over a session. Lives on the stack of that
 * thread; contexts nest.
 */
class CallContext {
  public:
    CallContext(const Session* session, Connection* connection, bool oneway);
    ~CallContext();
    CallContext(const CallContext&) = delete;
    CallContext& operator=(const CallContext&) = delete;

    /** The innermost one of this thread, null for none. */
    static const CallContext* Current();
    /** On which connection this thread serves a call of that session whose caller waits; null if
     * it serves none. */
    static Connection* WaitingCaller(const Session* session);

    /** How many calls this thread serves, one inside the other. */
    static int Depth();

    const PeerProcess& Caller() const { return mConnection->Peer(); }

  private:
    const Session* const mSession;
    Connection* const mConnection;
    const bool mOneway;
    const int mDepth;
    const CallContext* const mOuter;
};

}  // namespace zarvo::host
