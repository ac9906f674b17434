#include "host/ctl/Refusals.h"

#include <algorithm>

namespace zarvo::host::ctl {
namespace {

constexpr Refusal kRefusals[] = {
        {"called from inside a callback", "return from the callback first"},
        {"aon manager is null", "the service has no stream manager; report it"},
        {"some type not support", "the service knows no such service types"},
        {"RemoteCallBackManager is null", "the service has no registry of clients; report it"},
        {"register callback failed", "another client came in between; try again"},
        {"clientHandle not register", "nobody is registered under this handle; was it put out?"},
        {"in_clientHandle not register", "nobody is registered under this handle; was it put out?"},
        {"service type need subset of register", "the types go beyond those registered"},
        {"config not support", "no sensor offers this size, rate and types; see 'aonctl sensors'"},
        {"can support this config when sensor running",
         "it can not: the stream runs with less than that, or on another sensor"},
        {"can support this config when other process use",
         "it can not: another sensor is subscribed"},
        {"aon manager SubscribeSensor failed", "the stream manager refused it; report it"},
        {"start service type is subset of subscribe service type",
         "the types are not among those subscribed"},
        {"aon manager StartService failed", "a camera has the sensor, or the stream refused"},
        {"sensor hub is running, please do start on other process stop",
         "the stream runs without some of these types; stop it first"},
        {"not stop all service type, unregisterClient failed", "something is still started"},
        {"not unsubscribe all service type, unregisterClient failed",
         "a configuration is still subscribed"},
};

}  // namespace

std::span<const Refusal> AllRefusals() {
    return kRefusals;
}

std::string_view MeaningOf(std::string_view message) {
    const auto known = std::find_if(std::begin(kRefusals), std::end(kRefusals),
                                    [&](const Refusal& one) { return one.message == message; });
    return known == std::end(kRefusals) ? std::string_view() : known->meaning;
}

}  // namespace zarvo::host::ctl
