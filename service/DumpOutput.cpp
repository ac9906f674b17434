#include "service/DumpOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <ctime>

namespace zarvo::aon {
namespace {

using Clock = std::chrono::steady_clock;

/**
 * Keeps a pipe without a reader from ending the process, and a terminal that belongs to others from
 * stopping it, for the calling thread and meanwhile.
 */
class NoSignal {
  public:
    NoSignal() {
        sigemptyset(&mPipe);
        sigaddset(&mPipe, SIGPIPE);
        sigset_t blocked = mPipe;
        sigaddset(&blocked, SIGTTOU);  // never comes while it is blocked
        sigset_t pending;
        sigpending(&pending);
        mWasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &blocked, &mBefore);
    }
    ~NoSignal() {
        const timespec now{};
        if (!mWasPending) sigtimedwait(&mPipe, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
    }
    NoSignal(const NoSignal&) = delete;
    NoSignal& operator=(const NoSignal&) = delete;

  private:
    sigset_t mPipe{};
    sigset_t mBefore{};
    bool mWasPending = false;
};

/** As write(), without waiting: EAGAIN when nothing can be taken now. */
using WriteSome = ssize_t (*)(int fd, std::string_view text);

ssize_t WriteFile(int fd, std::string_view text) {
    return write(fd, text.data(), text.size());
}

ssize_t WriteSocket(int fd, std::string_view text) {
    return send(fd, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

/**
 * That a pipe has room does not keep a write from waiting: another writer may take the room. The
 * flag belongs to all who share the pipe, so it is put back at once, and by one thread at a time:
 * else one would put back while another writes.
 */
ssize_t WriteShared(int fd, std::string_view text) {
    static std::atomic_flag changing;
    if (changing.test_and_set(std::memory_order_acquire)) {
        errno = EAGAIN;
        return -1;
    }
    const int flags = fcntl(fd, F_GETFL);
    ssize_t written = -1;
    if (flags >= 0 && fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0) {
        written = write(fd, text.data(), text.size());
        const int fault = errno;
        fcntl(fd, F_SETFL, flags);
        errno = fault;
    }
    changing.clear(std::memory_order_release);
    return written;
}

/** Null for what is not written to: a directory, a disk, a counter of events. */
WriteSome WriterFor(int fd) {
    struct stat status {};
    if (fstat(fd, &status) != 0) return nullptr;
    switch (status.st_mode & S_IFMT) {
        case S_IFREG:
            return WriteFile;
        case S_IFSOCK:
            return WriteSocket;
        case S_IFIFO:
        case S_IFCHR:
            return WriteShared;
        default:
            return nullptr;
    }
}

/** Waits until something can be written. */
binder_status_t AwaitRoom(int fd, Clock::time_point end) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0) return STATUS_TIMED_OUT;
        pollfd waited{fd, POLLOUT, 0};
        const int ready = poll(&waited, 1, static_cast<int>(left));
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        // With an error the write that follows says which.
        return ready > 0 && (waited.revents & POLLNVAL) == 0 ? STATUS_OK : STATUS_UNKNOWN_ERROR;
    }
}

}  // namespace

binder_status_t WriteDump(int fd, std::string_view text, std::chrono::milliseconds limit) {
    const WriteSome writeSome = WriterFor(fd);
    if (writeSome == nullptr) return STATUS_UNKNOWN_ERROR;
    const NoSignal noSignal;
    const Clock::time_point end = Clock::now() + limit;
    while (!text.empty()) {
        const binder_status_t room = AwaitRoom(fd, end);
        if (room != STATUS_OK) return room;
        const ssize_t written = writeSome(fd, text.substr(0, PIPE_BUF));
        if (written < 0 && errno != EINTR && errno != EAGAIN) return STATUS_UNKNOWN_ERROR;
        if (written > 0) text.remove_prefix(static_cast<size_t>(written));
        // The room was taken by another writer, or there is less than it seemed.
        if (written <= 0) poll(nullptr, 0, 1);
    }
    return STATUS_OK;
}

}  // namespace zarvo::aon
