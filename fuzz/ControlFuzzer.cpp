// Calls of the host control with any parcels: it refuses what cannot be, and all that was ordered
// can be taken back.

#include <array>
#include <cstdlib>

#include "fuzz/Calls.h"
#include "host/control/HostControl.h"
#include "host/cutils/PropertyStore.h"
#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"

using zarvo::host::HostControl;

/** The input is a list of calls. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto service = ndk::SharedRefBase::make<zarvo::aon::AONService>();
    static const auto control = ndk::SharedRefBase::make<HostControl>(service->asBinder());
    static const std::array binders{service->asBinder(), control->asBinder()};
    const std::array objects{binders[0].get(), binders[1].get()};
    zarvo::fuzz::Input input(data, size);
    while (!input.IsEmpty())
        zarvo::fuzz::CallWithParts(objects[1], input, objects);
    bool isStreaming = true;
    std::vector<HostControl::CameraDevice> cameras;
    if (!control->clearFaults().isOk() || !control->isStreaming(&isStreaming).isOk() ||
        isStreaming || !control->listCameras(&cameras).isOk()) {
        std::abort();
    }
    for (const auto& camera : cameras)
        control->closeCamera(camera.instanceId);
    zarvo::host::PropertyStore::Instance().Clear();
    return 0;
}
