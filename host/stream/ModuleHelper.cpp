#include "host/stream/CameraDevices.h"

using zarvo::host::CameraDevices;

namespace {

void* DeviceListModule() {
    CameraDevices& devices = CameraDevices::Instance();
    if (devices.moduleFault.ShouldFail()) return nullptr;
    return static_cast<HalLogicalDeviceList*>(&devices);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] MtkcamModuleFactory getMtkcamModuleFactory(
        uint32_t moduleId) {
    if (moduleId != MTKCAM_MODULE_ID_HAL_LOGICAL_DEVICE_LIST) return nullptr;
    return CameraDevices::Instance().factoryFault.ShouldFail() ? nullptr : &DeviceListModule;
}
