#pragma once

#include <android/binder_auto_utils.h>

#include <memory>

namespace zarvo::host {

class LoopbackConnection;

/**
 * A binder connection from this process to itself, with a server's and a client's end. An object
 * that passes it becomes a proxy at the other end, and itself again on the way back; every call
 * through a proxy is packed into a parcel and unpacked from another. Unlike a client that is
 * really elsewhere, this one can be killed at any moment of a test's choosing.
 *
 * Calls run on the calling thread. So does a call back that is made meanwhile: it arrives on the
 * thread that waits for the outer call, as it would over a socket. FLAG_ONEWAY calls run in order
 * on a thread of the connection, one for each end. Death notices of both ends run on one more
 * thread of the connection, never inside a call.
 *
 * Owned by the client's side of a test or demo. Thread-safe. Ending it kills the connection and
 * waits for its threads, so hold nothing that a handler or a notice may wait for; on one of those
 * very threads it waits for none. Proxies may outlive it: they are dead then.
 */
class ABINDER_API Loopback {
  public:
    /**
     * A connection whose server offers `root`, of which it holds a reference until it is killed.
     * Null if `root` is null or remote, or if the system has no thread to give.
     */
    static std::shared_ptr<Loopback> Connect(AIBinder* root);

    ~Loopback();
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;

    /** The client's proxy of the root: the same AIBinder as long as anyone holds it. */
    ndk::SpAIBinder Root();

    /**
     * Ends the connection: from here on all proxies of both ends are dead and their calls give
     * STATUS_DEAD_OBJECT, those in flight when their handler returns. Before this returns, oneway
     * calls not begun are dropped and the objects held for the other end are let go, which may end
     * them on this thread. Any thread may call it, also inside a call of this connection; again
     * does nothing.
     */
    void Kill();

    /**
     * Waits until every death notice of the killed connection has been given, each with its
     * onUnlinked. Returns at once if it is not killed, or in a notice.
     */
    void WaitForNotices();

  private:
    explicit Loopback(std::shared_ptr<LoopbackConnection> connection);

    const std::shared_ptr<LoopbackConnection> mConnection;
};

}  // namespace zarvo::host
