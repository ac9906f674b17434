#include "host/binder/rpc/Socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "host/binder/rpc/SocketAddress.h"

namespace zarvo::host {

namespace {

/** What is left, as a socket's options take it: at least a moment; zero is for ever. */
timeval TimeUntil(Deadline deadline) {
    using std::chrono::microseconds;
    if (deadline == Deadline::max()) return {};
    const auto now = std::chrono::steady_clock::now();
    const auto left = std::chrono::ceil<microseconds>(std::max(deadline, now) - now);
    const auto count = std::max<microseconds::rep>(left.count(), 1);
    return {.tv_sec = count / 1'000'000, .tv_usec = count % 1'000'000};
}

/** Takes `sent` bytes off the front. */
std::span<iovec> Skip(std::span<iovec> parts, size_t sent) {
    while (!parts.empty() && sent >= parts.front().iov_len) {
        sent -= parts.front().iov_len;
        parts = parts.subspan(1);
    }
    if (!parts.empty()) {
        parts.front().iov_base = static_cast<char*>(parts.front().iov_base) + sent;
        parts.front().iov_len -= sent;
    }
    return parts;
}

}  // namespace

Socket::~Socket() {
    if (mFd >= 0) close(mFd);
}

std::pair<Socket, Socket> Socket::Pair() {
    std::array<int, 2> fds{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds.data()) != 0) return {};
    return {Socket(fds[0]), Socket(fds[1])};
}

Socket Socket::Connect(const std::string& path, Deadline deadline) {
    const auto address = SocketAddress::Of(path);
    if (!address) {
        errno = ENAMETOOLONG;
        return {};
    }
    Socket socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.IsOpen()) return {};
    int result = 0;
    do {
        // What connect keeps to; to send, nobody waits inside the system.
        const timeval time = TimeUntil(deadline);
        setsockopt(socket.Fd(), SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time));
        result = connect(socket.Fd(), address->Get(), address->Size());
    } while (result != 0 && errno == EINTR);
    if (result == 0) return socket;
    if (errno == EAGAIN) errno = ETIMEDOUT;
    return {};
}

PeerProcess Socket::Peer() const {
    ucred credentials{};
    socklen_t size = sizeof(credentials);
    if (getsockopt(mFd, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return {};
    return {credentials.pid, credentials.uid};
}

bool Socket::Send(std::span<iovec> parts) const {
    while (SendSome(&parts)) {
        if (parts.empty()) return true;
        WaitToSend(false);
    }
    return false;
}

bool Socket::SendSome(std::span<iovec>* parts) const {
    for (*parts = Skip(*parts, 0); !parts->empty();) {
        msghdr message{};
        message.msg_iov = parts->data();
        message.msg_iovlen = parts->size();
        const ssize_t sent = sendmsg(mFd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return errno == EAGAIN || errno == EWOULDBLOCK;
        *parts = Skip(*parts, static_cast<size_t>(sent));
    }
    return true;
}

bool Socket::WaitToSend(bool orReceived) const {
    const auto events = static_cast<short>(orReceived ? POLLOUT | POLLIN : POLLOUT);
    pollfd waiting{.fd = mFd, .events = events, .revents = 0};
    while (poll(&waiting, 1, -1) < 0 && errno == EINTR) {
    }
    return (waiting.revents & POLLIN) != 0;
}

size_t Socket::Receive(void* to, size_t length) const {
    ssize_t received = 0;
    do {
        received = recv(mFd, to, length, 0);
    } while (received < 0 && errno == EINTR);
    return received < 0 ? 0 : static_cast<size_t>(received);
}

bool Socket::ReceiveAll(void* to, size_t length) const {
    auto* place = static_cast<char*>(to);
    while (length > 0) {
        const ssize_t received = recv(mFd, place, length, MSG_WAITALL);
        if (received < 0 && errno == EINTR) continue;
        if (received <= 0) return false;
        place += received;
        length -= static_cast<size_t>(received);
    }
    return true;
}

void Socket::LimitReceiveTime(Deadline deadline) const {
    const timeval time = TimeUntil(deadline);
    setsockopt(mFd, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof(time));
}

void Socket::SetRoomForUnreceived(int bytes) const {
    int have = 0;
    socklen_t length = sizeof(have);
    getsockopt(mFd, SOL_SOCKET, SO_SNDBUF, &have, &length);
    if (have >= bytes) return;
    // The system takes it twice, for what it needs besides.
    const int half = bytes / 2;
    setsockopt(mFd, SOL_SOCKET, SO_SNDBUF, &half, sizeof(half));
}

void Socket::Shutdown() const {
    shutdown(mFd, SHUT_RDWR);
}

}  // namespace zarvo::host
