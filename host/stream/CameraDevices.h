#pragma once

#include <map>
#include <mutex>
#include <vector>

#include "host/common/FaultPoint.h"
#include "platform/mtkcam/HalLogicalDeviceList.h"

namespace zarvo::host {

/**
 * Which sensors stand behind each camera device: devices 0 to 3 use the sensor of the same
 * number, device 4 the sensors 0 and 1, device 5 the sensors 2 and 3, until a program says
 * otherwise. One per process, never destroyed; any thread.
 */
class [[gnu::visibility("default")]] CameraDevices final : public HalLogicalDeviceList {
  public:
    static CameraDevices& Instance();

    /** Replaces the table: instance id -> sensor ids. */
    void SetDevices(std::map<int, std::vector<int>> devices);

    std::map<int, std::vector<int>> Devices() const;

    std::vector<int> getSensorIdsOfDevice(int instanceId) override;

    /** Failures of getMtkcamModuleFactory() and of the factory, which then give null. */
    FaultPoint factoryFault, moduleFault;

  private:
    CameraDevices() = default;

    mutable std::mutex mMutex;
    std::map<int, std::vector<int>> mDevices{{0, {0}}, {1, {1}},    {2, {2}},
                                             {3, {3}}, {4, {0, 1}}, {5, {2, 3}}};
};

}  // namespace zarvo::host
