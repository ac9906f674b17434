#pragma once

#include <cstdint>
#include <vector>

/** Knows which sensors stand behind a camera device. */
class HalLogicalDeviceList {
  public:
    virtual ~HalLogicalDeviceList() = default;

    /** The sensors that the camera device uses; empty for an unknown one. Any thread. */
    virtual std::vector<int> getSensorIdsOfDevice(int instanceId) = 0;
};

/** The module id under which the logical device list is found. */
inline constexpr uint32_t MTKCAM_MODULE_ID_HAL_LOGICAL_DEVICE_LIST = 0x30001;

/**
 * Gives the module, a HalLogicalDeviceList* for the id above. It lives as long as the process; may
 * be null.
 */
using MtkcamModuleFactory = void* (*)();

/** The factory of a module, or null when the library does not have it. Any thread. */
extern "C" MtkcamModuleFactory getMtkcamModuleFactory(uint32_t moduleId);
