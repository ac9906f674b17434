#include "host/ctl/Service.h"

#include <android/binder_manager.h>

#include <cerrno>
#include <cstdio>

#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

constexpr char kNoAnswer[] = "aonctl: the service does not answer\n";
constexpr char kNotRunning[] =
        "aonctl: the service does not run; start vendor.zarvo.hardware.camera.aon-service\n";

/** Messages that say less than they check, or the opposite. */
struct Meaning {
    std::string_view message;
    std::string_view meaning;
};
constexpr Meaning kMeanings[] = {
        {"called from inside a callback", "return from the callback first"},
        {"clientHandle not register", "nobody is registered under this handle; was it put out?"},
        {"in_clientHandle not register", "nobody is registered under this handle; was it put out?"},
        {"service type need subset of register", "the types go beyond those registered"},
        {"config not support", "no sensor offers this size, rate and types; see 'aonctl sensors'"},
        {"can support this config when sensor running",
         "it can not: the stream runs with less than that, or on another sensor"},
        {"can support this config when other process use",
         "it can not: another sensor is subscribed"},
        {"start service type is subset of subscribe service type",
         "the types are not among those subscribed"},
        {"aon manager StartService failed", "a camera has the sensor, or the stream refused"},
        {"sensor hub is running, please do start on other process stop",
         "the stream runs without some of these types; stop it first"},
        {"not stop all service type, unregisterClient failed", "something is still started"},
        {"not unsubscribe all service type, unregisterClient failed",
         "a configuration is still subscribed"},
};

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

std::string_view MeaningOf(std::string_view message) {
    for (const Meaning& meaning : kMeanings)
        if (meaning.message == message) return meaning.meaning;
    return {};
}

int Report(const std::string& what, const ndk::ScopedAStatus& status) {
    if (status.isOk()) return kDone;
    if (status.getStatus() == STATUS_DEAD_OBJECT) {
        std::fprintf(stderr, "aonctl: %s: the service went away\n", what.c_str());
        return kNoService;
    }
    const std::string message = status.getMessage();
    const std::string_view meaning = MeaningOf(message);
    std::fprintf(stderr, "aonctl: %s: %s%s%.*s%s\n", what.c_str(),
                 message.empty() ? status.getDescription().c_str() : message.c_str(),
                 meaning.empty() ? "" : " (", static_cast<int>(meaning.size()), meaning.data(),
                 meaning.empty() ? "" : ")");
    return kFailed;
}

}  // namespace zarvo::host::ctl
