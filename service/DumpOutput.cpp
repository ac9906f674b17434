#include "service/DumpOutput.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>

namespace zarvo::aon {
namespace {

using Clock = std::chrono::steady_clock;

/** Keeps a pipe without a reader from ending the process, for the calling thread and meanwhile. */
class NoPipeSignal {
  public:
    NoPipeSignal() {
        sigemptyset(&mPipe);
        sigaddset(&mPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        mWasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &mPipe, &mBefore);
    }
    ~NoPipeSignal() {
        const timespec now{};
        if (!mWasPending) sigtimedwait(&mPipe, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

  private:
    sigset_t mPipe{};
    sigset_t mBefore{};
    bool mWasPending = false;
};

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
    if (fd < 0) return STATUS_UNKNOWN_ERROR;
    const NoPipeSignal noSignal;
    const Clock::time_point end = Clock::now() + limit;
    while (!text.empty()) {
        const binder_status_t room = AwaitRoom(fd, end);
        if (room != STATUS_OK) return room;
        // A pipe with any room takes that much without waiting, and so does a socket.
        const ssize_t written = write(fd, text.data(), std::min<size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR && errno != EAGAIN) return STATUS_UNKNOWN_ERROR;
        if (written > 0) text.remove_prefix(static_cast<size_t>(written));
    }
    return STATUS_OK;
}

}  // namespace zarvo::aon
