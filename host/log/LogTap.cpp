#include "host/log/LogTap.h"

#include <android/log.h>
#include <unistd.h>

#include <mutex>
#include <utility>

namespace zarvo::host {
namespace {

/** Where the lines go now. Never destroyed: threads log while the process ends. */
struct Outlet {
    std::mutex mutex;
    std::shared_ptr<const LogSink> sink;

    std::shared_ptr<const LogSink> Get() {
        const std::lock_guard lock(mutex);
        return sink;
    }
    std::shared_ptr<const LogSink> Exchange(std::shared_ptr<const LogSink> next) {
        const std::lock_guard lock(mutex);
        return std::exchange(sink, std::move(next));
    }
};

Outlet& TheOutlet() {
    static auto* const outlet = new Outlet();
    return *outlet;
}

void HandOver(const LogSink& sink, const __android_logger_data& data, const char* message) {
    thread_local bool inSink = false;
    if (inSink) return;
    inSink = true;
    sink({.priority = data.priority,
          .tag = data.tag == nullptr ? "" : data.tag,
          .message = message == nullptr ? "" : message,
          .time = std::chrono::system_clock::now(),
          .thread = gettid()});
    inSink = false;
}

void OnLine(const __android_logger_data* data, const char* message) {
    if (const auto sink = TheOutlet().Get()) {
        HandOver(*sink, *data, message);
    } else {
        __android_log_stderr_logger(data, message);
    }
}

// Set once and left: liblog's hook cannot be asked for what it was before.
void InstallHook() {
    static const bool installed = (__android_log_set_logger(&OnLine), true);
    (void)installed;
}

}  // namespace

LogTap::LogTap(LogSink sink)
    : mFormerSink(TheOutlet().Exchange(std::make_shared<const LogSink>(std::move(sink)))),
      mFormerPriority(__android_log_set_minimum_priority(ANDROID_LOG_VERBOSE)) {
    InstallHook();
}

LogTap::~LogTap() {
    __android_log_set_minimum_priority(mFormerPriority);
    TheOutlet().Exchange(std::move(mFormerSink));
}

}  // namespace zarvo::host
