#pragma once

#include <cstdlib>
#include <memory>

#include "fuzz/Samples.h"
#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"

namespace zarvo::fuzz {

using aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;

/** Lets the simulator have one sensor, with that size, whose frames come by command. */
inline void SetSmallSensor(host::SimulatorControl& simulator) {
    host::SensorDescription sensor{.id = 0, .mode = 0x3F, .sizes = {{}}};
    sensor.sizes[0].width = kWidth;
    sensor.sizes[0].height = kHeight;
    sensor.sizes[0].rates = {5, 10};
    simulator.SetSensors({sensor});
    simulator.SetManualDelivery(true);
}

/** Waits until the cameras' notices have ended: the service finishes one on a thread of its own,
 * for which the next one waits. */
inline void AwaitCameras(host::SimulatorControl& simulator) {
    constexpr int kNoCamera = 99;
    simulator.CloseCamera(kNoCamera);
    simulator.WaitForCameraNotices();
}

/** Lets a client have the small sensor run, which has to succeed; its handle. */
inline int64_t BeginClient(aon::AONService& service,
                           const std::shared_ptr<IAONServiceCallBack>& client) {
    const SensorConfigInfo config = Config(aon::AONService::SERVICE_TYPE_FUSION);
    int64_t handle = 0;
    if (!service.registerClient(client, config.serviceType, &handle).isOk() ||
        !service.subscribeSensor(handle, config).isOk() ||
        !service.startService(handle, config.serviceType).isOk()) {
        std::abort();
    }
    return handle;
}

}  // namespace zarvo::fuzz
