#pragma once

#include <android/binder_status.h>
#include <sys/types.h>
#include <sys/uio.h>

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

namespace zarvo::host {

/** When to stop waiting; Deadline::max() for never. */
using Deadline = std::chrono::steady_clock::time_point;

/** The process at the other end, as the system knows it. */
struct PeerProcess {
    pid_t pid = 0;
    uid_t uid = 0;
};

/**
 * Owns a Unix-domain stream socket, or none. Blocking. One thread may send while another receives
 * and any thread shuts down; else used by one thread at a time. Never raises SIGPIPE.
 */
class ABINDER_API Socket {
  public:
    Socket() = default;
    explicit Socket(int fd) : mFd(fd) {}
    Socket(Socket&& other) noexcept : mFd(std::exchange(other.mFd, -1)) {}
    Socket& operator=(Socket other) noexcept {
        std::swap(mFd, other.mFd);
        return *this;
    }
    ~Socket();

    /** Two sockets that are connected with each other; not open if the system has none to give. */
    static std::pair<Socket, Socket> Pair();
    /** A connection to who listens at `path`; not open, and errno says why, if nobody does, or too
     * many wait there until `deadline`. */
    static Socket Connect(const std::string& path, Deadline deadline = Deadline::max());

    bool IsOpen() const { return mFd >= 0; }
    int Fd() const { return mFd; }
    PeerProcess Peer() const;

    /** Sends all of it as one message, changing `parts`; false if the connection is gone. */
    bool Send(std::span<iovec> parts) const;
    /** Sends what the other end has room for, and takes it off `parts`; false if the connection is
     * gone. */
    bool SendSome(std::span<iovec>* parts) const;
    /** Waits until SendSome gets on; or, if `orReceived`, until something has arrived, and then it
     * is true. */
    bool WaitToSend(bool orReceived) const;
    /** Receives at least one byte and at most `length`; 0 if the connection is gone. */
    size_t Receive(void* to, size_t length) const;
    /** Receives exactly `length` bytes; false if the connection is gone. */
    bool ReceiveAll(void* to, size_t length) const;
    /** From here on a Receive fails that gets nothing for as long as it is to `deadline` now. */
    void LimitReceiveTime(Deadline deadline) const;
    /** Lets at least so many bytes that were sent wait for the other end, as far as the system
     * allows: up to twice net.core.wmem_max, which by default is 212992. */
    void SetRoomForUnreceived(int bytes) const;
    /** Ends the connection for both ends, and wakes who waits on it. */
    void Shutdown() const;

  private:
    int mFd = -1;
};

}  // namespace zarvo::host
