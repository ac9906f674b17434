// Tells how many faces are seen, until Ctrl-C, or for as many frames as the argument says.
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

using namespace aidl::vendor::zarvo::hardware::camera::aon;

// A callback must not call the service: it tells the main thread, through a pipe, what happened.
enum News : char { kFrame, kSensorIdle, kLeave };
int gPipe[2];
void Tell(News news) {
    if (write(gPipe[1], &news, 1) < 0) std::abort();
}

struct Callback : BnAONServiceCallBack {
    ndk::ScopedAStatus onAONEvent(int64_t, const AONCallBackInfo& info) override {
        for (const AONResult& result : info.results)
            if (result.key == AONResult::RESULT_KEY_FUSION_COUNT)
                std::printf("%d face(s)\n", result.value.get<AONResultValue::intValue>());
        Tell(kFrame);
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus onSensorStateChanged(int64_t, const AONSensorStateInfo& info) override {
        if (info.state == AONSensorStateInfo::SENSOR_STATE_BUSY) std::puts("the sensor is busy");
        if (info.state == AONSensorStateInfo::SENSOR_STATE_IDLE) Tell(kSensorIdle);
        return ndk::ScopedAStatus::ok();
    }
};

bool Did(const char* what, const ndk::ScopedAStatus& status) {
    std::printf("%s: %s\n", what, status.getDescription().c_str());
    return status.isOk();
}

int main(int argc, char** argv) {
    ABinderProcess_startThreadPool();
    const auto service = IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_waitForService(
            "vendor.zarvo.hardware.camera.aon.IAONService/default")));
    if (service == nullptr || pipe(gPipe) != 0) return 1;
    const ndk::ScopedAIBinder_DeathRecipient death(AIBinder_DeathRecipient_new([](void*) {
        std::puts("the service died");
        Tell(kLeave);
    }));
    AIBinder_linkToDeath(service->asBinder().get(), death.get(), nullptr);
    std::signal(SIGINT, [](int) { Tell(kLeave); });

    constexpr int kFusion = IAONService::SERVICE_TYPE_FUSION;
    // Sensor 0, 640x480 at 10 frames per second, as getAonSensorInfoList() offers it.
    SensorConfigInfo config{0, 640, 480, 10, 0, 0, kFusion, IAONService::DELIVERY_MODE_TIME_BASED};
    const auto callback = ndk::SharedRefBase::make<Callback>();
    int64_t me = 0;
    if (!Did("register", service->registerClient(callback, kFusion, &me))) return 1;
    if (!Did("subscribe", service->subscribeSensor(me, config))) return 1;
    Did("start", service->startService(me, kFusion));  // refused while the sensor is busy
    long framesLeft = argc > 1 ? std::strtol(argv[1], nullptr, 10) : -1;
    for (News news{}; framesLeft != 0 && news != kLeave && read(gPipe[0], &news, 1) > 0;) {
        if (news == kFrame) --framesLeft;
        if (news == kSensorIdle) Did("start again", service->startService(me, kFusion));
    }
    Did("stop", service->stopService(me, kFusion));
    Did("unsubscribe", service->unsubscribeSensor(me));
    return Did("unregister", service->unregisterClient(me)) ? 0 : 1;
}
