#pragma once

#include <android/binder_auto_utils.h>

#include <memory>

namespace zarvo::host {

/**
 * A binder session from this process to itself over socket pairs, with a server's and a client's
 * end. An object that passes it becomes a proxy at the other end, and itself again on the way back.
 * Unlike a client that is really elsewhere, this one can be killed at any moment of a test's
 * choosing.
 *
 * Calls run on threads of the session, as they do between processes; a call back that is made
 * meanwhile arrives on the thread that waits for the outer call. Death notices run on one more
 * thread of each end, never inside a call.
 *
 * Owned by the client's side of a test or demo. Thread-safe. Ending it kills the session and waits
 * for its threads, so hold nothing that a handler or a notice may wait for; from one of those very
 * threads it does not wait for that one. Proxies may outlive it: they are dead then.
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
     * Ends the session: from here on all proxies of both ends are dead and their calls give
     * STATUS_DEAD_OBJECT, also those under way, whose handlers may still run. Oneway calls not
     * begun are dropped. Any thread may call it, also inside a call of this session; again does
     * nothing.
     */
    void Kill();

    /**
     * Waits until every death notice of the killed session has been given, each with its
     * onUnlinked, and the objects held for the other end have been let go. Returns at once if it
     * is not killed; in a notice it waits for the other end's alone.
     */
    void WaitForNotices();

  private:
    struct Ends;

    explicit Loopback(std::unique_ptr<Ends> ends);

    const std::unique_ptr<Ends> mEnds;
};

}  // namespace zarvo::host
