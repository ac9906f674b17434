#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

using namespace aidl::vendor::zarvo::hardware::camera::aon;

namespace {

constexpr char kInstance[] = "vendor.zarvo.hardware.camera.aon.IAONService/default";
constexpr int32_t kTypes = IAONService::SERVICE_TYPE_FUSION;

/** Where this process is to be killed. */
std::string_view gPoint;

void Reach(std::string_view point) {
    if (point == gPoint) kill(getpid(), SIGKILL);
}

struct Callback : BnAONServiceCallBack {
    ndk::ScopedAStatus onAONEvent(int64_t, const AONCallBackInfo&) override {
        Reach("event");
        if (!received.exchange(true)) received.notify_all();
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus onSensorStateChanged(int64_t, const AONSensorStateInfo&) override {
        Reach("state");
        return ndk::ScopedAStatus::ok();
    }

    std::atomic<bool> received{false};
};

/** Ends the process, and says why, if a call was refused. */
void Must(const char* call, const ndk::ScopedAStatus& status) {
    if (status.isOk()) return;
    std::printf("%s: %s\n", call, status.getDescription().c_str());
    std::exit(EXIT_FAILURE);
}

void KillLater(std::chrono::microseconds delay) {
    std::thread([delay] {
        std::this_thread::sleep_for(delay);
        kill(getpid(), SIGKILL);
    }).detach();
}

}  // namespace

/**
 * A client that is killed where its first argument says: "found", "registered", "subscribed",
 * "started", inside an "event", inside a "state" that its own call brings about; or as many
 * microseconds as the second argument says after its "begin", or after it began to "call" over and
 * over. With "receive" it goes on and on, with "live" it leaves in good order; both print their
 * handle first, and "event" at the first event.
 */
int main(int argc, char** argv) {
    if (argc != 3) return EXIT_FAILURE;
    gPoint = argv[1];
    const std::chrono::microseconds delay(std::strtol(argv[2], nullptr, 10));
    if (gPoint == "begin") KillLater(delay);

    ABinderProcess_startThreadPool();
    const auto service =
            IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_waitForService(kInstance)));
    if (service == nullptr) return EXIT_FAILURE;
    Reach("found");
    const auto callback = ndk::SharedRefBase::make<Callback>();
    int64_t handle = 0;
    Must("register", service->registerClient(callback, kTypes, &handle));
    std::printf("%d\n", static_cast<int>(handle));
    std::fflush(stdout);
    Reach("registered");
    const SensorConfigInfo config{0, 640, 480,    30,
                                  0, 0,   kTypes, IAONService::DELIVERY_MODE_TIME_BASED};
    Must("subscribe", service->subscribeSensor(handle, config));
    Reach("subscribed");
    Must("start", service->startService(handle, kTypes));
    Reach("started");
    if (gPoint == "call") KillLater(delay);
    // What is on its way when this dies may act on the next client: nothing that would harm it.
    while (gPoint == "call" || gPoint == "begin") {
        std::vector<AONSensorInfo> sensors;
        Must("list", service->getAonSensorInfoList(&sensors));
        Must("start", service->startService(handle, kTypes));
    }
    callback->received.wait(false);
    std::puts("event");
    std::fflush(stdout);
    while (gPoint != "live")
        pause();
    Must("stop", service->stopService(handle, kTypes));
    Must("unsubscribe", service->unsubscribeSensor(handle));
    Must("unregister", service->unregisterClient(handle));
    return EXIT_SUCCESS;
}
