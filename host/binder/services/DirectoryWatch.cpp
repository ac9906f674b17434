#include "host/binder/services/DirectoryWatch.h"

#include <poll.h>
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace zarvo::host {

namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

int MillisecondsUntil(steady_clock::time_point deadline) {
    const auto left = ceil<milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::max(milliseconds(0), left).count());
}

}  // namespace

DirectoryWatch::DirectoryWatch(const std::string& path)
    : mEvents(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (mEvents.IsOpen() &&
        inotify_add_watch(mEvents.Get(), path.c_str(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR) < 0) {
        mEvents = FileDescriptor();
    }
}

void DirectoryWatch::Wait(steady_clock::time_point deadline) {
    pollfd waiting{.fd = mEvents.Get(), .events = POLLIN, .revents = 0};
    while (poll(&waiting, 1, MillisecondsUntil(deadline)) < 0 && errno == EINTR) {
    }
    std::array<char, 4096> told{};
    while (read(mEvents.Get(), told.data(), told.size()) > 0) {
    }
}

}  // namespace zarvo::host
