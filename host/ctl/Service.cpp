#include "host/ctl/Service.h"

#include <android/binder_manager.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "host/ctl/Command.h"
#include "host/ctl/Refusals.h"

namespace zarvo::host::ctl {
namespace {

constexpr char kNoAnswer[] = "aonctl: the service does not answer\n";
constexpr char kNotRunning[] =
        "aonctl: the service does not run; start vendor.zarvo.hardware.camera.aon-service\n";

template <typename Interface>
std::shared_ptr<Interface> Find(const std::string& instance) {
    errno = 0;
    const ndk::SpAIBinder binder(AServiceManager_checkService(instance.c_str()));
    const bool isMute = binder.get() == nullptr && errno == ETIMEDOUT;
    auto found = Interface::fromBinder(binder);
    if (found == nullptr) std::fputs(isMute ? kNoAnswer : kNotRunning, stderr);
    return found;
}

}  // namespace

std::shared_ptr<IAONService> FindService() {
    return Find<IAONService>(std::string(IAONService::descriptor) + "/default");
}

std::shared_ptr<IHostControl> FindControls() {
    return Find<IHostControl>(IHostControl::INSTANCE);
}

int ReportGone() {
    // One line, however many calls fail for it.
    static std::atomic<bool> said = false;
    if (!said.exchange(true)) std::fputs("aonctl: the service went away\n", stderr);
    return kNoService;
}

int Report(const std::string& what, const ndk::ScopedAStatus& status) {
    if (status.isOk()) return kDone;
    if (status.getStatus() == STATUS_DEAD_OBJECT) return ReportGone();
    std::string message = status.getMessage();
    if (status.getStatus() == STATUS_BAD_VALUE) message = "it cannot be sent; is a text no UTF-8?";
    const std::string_view meaning = MeaningOf(message);
    std::fprintf(stderr, "aonctl: %s: %s%s%.*s%s\n", what.c_str(),
                 message.empty() ? status.getDescription().c_str() : message.c_str(),
                 meaning.empty() ? "" : " (", static_cast<int>(meaning.size()), meaning.data(),
                 meaning.empty() ? "" : ")");
    return kFailed;
}

}  // namespace zarvo::host::ctl
