#pragma once

#include <memory>
#include <string>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "host/binder/Loopback.h"
#include "tests/clients/RecordingCallback.h"

namespace zarvo::test {

/** A client as if in a process of its own: it reaches the service through a proxy and can die. */
class RemoteClient {
  public:
    using IAONService = aidl::vendor::zarvo::hardware::camera::aon::IAONService;
    using SensorConfigInfo = aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

    explicit RemoteClient(const std::shared_ptr<IAONService>& target)
        : mConnection(host::Loopback::Connect(target->asBinder().get())),
          service(IAONService::fromBinder(mConnection->Root())) {}

    /** 640x480 at 10 frames per second, time-based. */
    static SensorConfigInfo Config(int sensorId, int serviceType) {
        SensorConfigInfo config;
        config.sensorId = sensorId;
        config.frameWidth = 640;
        config.frameHeight = 480;
        config.fps = 10;
        config.serviceType = serviceType;
        config.deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
        return config;
    }

    // Each gives the description of the status, "No error" when it went well.
    std::string Register(int serviceType) {
        return service->registerClient(callback, serviceType, &handle).getDescription();
    }
    std::string Subscribe(const SensorConfigInfo& config) {
        return service->subscribeSensor(handle, config).getDescription();
    }
    std::string Start(int serviceType) {
        return service->startService(handle, serviceType).getDescription();
    }
    std::string Stop(int serviceType) {
        return service->stopService(handle, serviceType).getDescription();
    }
    std::string Unsubscribe() { return service->unsubscribeSensor(handle).getDescription(); }
    std::string AskForSensors() {
        std::vector<aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo> sensors;
        return service->getAonSensorInfoList(&sensors).getDescription();
    }
    std::string Unregister() { return service->unregisterClient(handle).getDescription(); }

    /** Ends the client's process; its death is told a moment later. */
    void BeginToDie() { mConnection->Kill(); }
    /** Ends the client's process and waits until its death was told. */
    void Die() {
        mConnection->Kill();
        mConnection->WaitForNotices();
    }

  private:
    const std::shared_ptr<host::Loopback> mConnection;

  public:
    const std::shared_ptr<IAONService> service;
    const std::shared_ptr<RecordingCallback> callback =
            ndk::SharedRefBase::make<RecordingCallback>();
    int64_t handle = 0;
};

}  // namespace zarvo::test
