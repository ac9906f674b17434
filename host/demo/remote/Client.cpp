#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>

#include <memory>
#include <string>
#include <vector>

#include "host/demo/remote/Dialogue.h"
#include "host/demo/remote/Remote.h"
#include "host/text/EventText.h"

namespace zarvo::host::demo {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;
using ndk::ScopedAStatus;

std::string SensorText(const AONSensorInfo& sensor) {
    std::string text = "sensor " + std::to_string(sensor.sensorId) + ":";
    for (const auto& frame : sensor.frameInfos) {
        text += " " + std::to_string(frame.frameWidth) + "x" + std::to_string(frame.frameHeight) +
                " at";
        for (const int32_t rate : frame.supportRates)
            text += " " + std::to_string(rate);
        text += " fps;";
    }
    return text;
}

/** Reports what the service tells. */
class Callback : public BnAONServiceCallBack {
  public:
    ScopedAStatus onAONEvent(int64_t /*clientHandle*/, const AONCallBackInfo& info) override {
        Report("event", std::to_string(info.serviceType) + ' ' +
                                std::to_string(FaceCount(info).value_or(-1)) + ' ' +
                                EventText(info));
        return ScopedAStatus::ok();
    }
    ScopedAStatus onSensorStateChanged(int64_t /*clientHandle*/,
                                       const AONSensorStateInfo& info) override {
        Report("state", std::to_string(info.sensorId) + ' ' + std::to_string(info.state) + ' ' +
                                StateText(info));
        return ScopedAStatus::ok();
    }
};

/** Does what the director asks. Used by the main thread. */
class Client {
  public:
    explicit Client(std::shared_ptr<IAONService> service) : mService(std::move(service)) {}

    ScopedAStatus List() {
        std::vector<AONSensorInfo> sensors;
        ScopedAStatus status = mService->getAonSensorInfoList(&sensors);
        for (const AONSensorInfo& sensor : sensors)
            Report("sensor", SensorText(sensor));
        return status;
    }
    ScopedAStatus Register(int32_t types) {
        ScopedAStatus status = mService->registerClient(mCallback, types, &mHandle);
        if (status.isOk()) Report("handle", std::to_string(mHandle));
        return status;
    }
    ScopedAStatus Subscribe(Numbers numbers) {
        SensorConfigInfo config;
        config.sensorId = static_cast<int32_t>(numbers[0]);
        config.frameWidth = static_cast<int32_t>(numbers[1]);
        config.frameHeight = static_cast<int32_t>(numbers[2]);
        config.fps = static_cast<int32_t>(numbers[3]);
        config.serviceType = static_cast<int32_t>(numbers[4]);
        config.deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
        return mService->subscribeSensor(mHandle, config);
    }
    ScopedAStatus Start(int32_t types) { return mService->startService(mHandle, types); }
    ScopedAStatus Stop(int32_t types) { return mService->stopService(mHandle, types); }
    ScopedAStatus Unsubscribe() { return mService->unsubscribeSensor(mHandle); }
    ScopedAStatus Unregister() { return mService->unregisterClient(mHandle); }

  private:
    const std::shared_ptr<IAONService> mService;
    const std::shared_ptr<Callback> mCallback = ndk::SharedRefBase::make<Callback>();
    int64_t mHandle = 0;
};

int32_t First(Numbers numbers) {
    return static_cast<int32_t>(numbers[0]);
}

}  // namespace

int RunClient() {
    ABinderProcess_startThreadPool();
    const std::string name = std::string(IAONService::descriptor) + "/default";
    const auto service =
            IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_waitForService(name.c_str())));
    if (service == nullptr) return EXIT_FAILURE;
    Client client(service);
    return ServeCommands({
            {"list", 0, [&](Numbers) { return client.List(); }},
            {"register", 1, [&](Numbers numbers) { return client.Register(First(numbers)); }},
            {"subscribe", 5, [&](Numbers numbers) { return client.Subscribe(numbers); }},
            {"start", 1, [&](Numbers numbers) { return client.Start(First(numbers)); }},
            {"stop", 1, [&](Numbers numbers) { return client.Stop(First(numbers)); }},
            {"unsubscribe", 0, [&](Numbers) { return client.Unsubscribe(); }},
            {"unregister", 0, [&](Numbers) { return client.Unregister(); }},
    });
}

}  // namespace zarvo::host::demo
