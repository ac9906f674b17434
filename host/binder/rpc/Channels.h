#pragma once

#include <android/binder_status.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

/**
 * The sockets on which one end of a session sends calls. A thread has one for itself from its
 * call to the reply, and for whatever it calls meanwhile. Opens further ones when all are in use,
 * up to a limit, if it was told how; one that the other end does not take is dropped, and none is
 * tried after it. Thread-safe; opens with no lock held.
 */
class Channels {
  public:
    using Shared = std::shared_ptr<Connection>;
    using Open = std::function<Shared()>;
    using IsTaken = std::function<bool(Connection&)>;

    /** How to open one more, how to find out whether the other end takes calls on it, and how many
     * there may be. */
    void SetGrowth(Open open, IsTaken isTaken, size_t most);
    /** One that the session got otherwise. Whoever hears of it by what `announce` sends finds it
     * here, and uses it after that; false, and it is not added, if that fails. */
    bool Add(Shared connection, const std::function<bool()>& announce);
    bool IsEmpty() const;
    /** Of those there are; see Socket::LimitReceiveTime. */
    void LimitReceiveTime(Deadline deadline) const;

    /**
     * Waits for a connection and keeps it for this thread: `nested` if that is one it has. `rotate`
     * takes them in turn. STATUS_WOULD_BLOCK if there is none at all, or none that others could
     * give back; STATUS_DEAD_OBJECT once closed.
     */
    binder_status_t Acquire(bool rotate, const Connection* nested, Shared* connection);
    /** The same without waiting or opening; null if none is free. */
    Shared TryAcquire();
    void Release(const Shared& connection);

    /** Ends all connections, for those who wait or read, too. */
    void Close();

  private:
    struct Channel {
        Shared connection;
        std::thread::id holder;
        int uses = 0;
    };

    Channel* FindLocked(const Connection* connection);
    bool IsHolderLocked() const;
    Channel* FreeLocked(bool rotate);
    Shared TakeLocked(Channel& channel);
    bool MayGrowLocked() const;
    /** Opens one more and keeps it for this thread; null if that failed. */
    Shared Grow(std::unique_lock<std::mutex>& lock);
    /** One that calls may be sent on; null if there is none to have. */
    Shared OpenTaken(std::unique_lock<std::mutex>& lock);

    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    // All of the following: mMutex.
    bool mClosed = false;
    Open mOpen;
    IsTaken mIsTaken;
    size_t mMost = 0;
    size_t mOpening = 0;
    size_t mNext = 0;
    std::vector<Channel> mChannels;
};

}  // namespace zarvo::host
