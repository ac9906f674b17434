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

constexpr milliseconds kForEver{-1};

milliseconds TimeUntil(std::optional<steady_clock::time_point> deadline) {
    if (!deadline) return kForEver;
    return std::max(milliseconds(0), ceil<milliseconds>(*deadline - steady_clock::now()));
}

}  // namespace

DirectoryWatch::DirectoryWatch(const std::string& path)
    : mEvents(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (mEvents.IsOpen() &&
        inotify_add_watch(mEvents.Get(), path.c_str(), IN_CREATE | IN_MOVED_TO | IN_ONLYDIR) < 0) {
        mEvents = FileDescriptor();
    }
}

bool DirectoryWatch::Wait(std::optional<steady_clock::time_point> deadline) {
    pollfd waiting{.fd = mEvents.Get(), .events = POLLIN, .revents = 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, static_cast<int>(TimeUntil(deadline).count()));
    } while (ready < 0 && errno == EINTR);
    std::array<char, 4096> told{};
    while (read(mEvents.Get(), told.data(), told.size()) > 0) {
    }
    return ready > 0;
}

}  // namespace zarvo::host
