#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace conformance {

namespace aon = aidl::vendor::zarvo::hardware::camera::aon;

/** How a call was answered, as text that tests compare: "OK", "error 1: message" for a
 * service-specific one, "exception -5: message", or "status -32" if the call itself failed. */
inline std::string Answer(const ndk::ScopedAStatus& status) {
    const std::string message = std::string(": ") + status.getMessage();
    switch (status.getExceptionCode()) {
        case EX_NONE:
            return "OK";
        case EX_SERVICE_SPECIFIC:
            return "error " + std::to_string(status.getServiceSpecificError()) + message;
        case EX_TRANSACTION_FAILED:
            return "status " + std::to_string(status.getStatus());
        default:
            return "exception " + std::to_string(status.getExceptionCode()) + message;
    }
}

inline constexpr char kOk[] = "OK";
inline constexpr char kNullCallback[] = "exception -3: ";
inline constexpr char kNested[] = "exception -5: called from inside a callback";
inline constexpr char kUnknown[] = "error 1: in_clientHandle not register";
inline constexpr char kSubscribeUnknown[] = "error 1: clientHandle not register";
inline constexpr char kBeyondRegistered[] = "error 2: service type need subset of register";
inline constexpr char kNotOffered[] = "error 1: config not support";
inline constexpr char kMoreThanRuns[] = "error 1: can support this config when sensor running";
inline constexpr char kOtherSensor[] = "error 1: can support this config when other process use";
inline constexpr char kBeyondSubscribed[] =
        "error 2: start service type is subset of subscribe service type";
inline constexpr char kOthersRun[] =
        "error 1: sensor hub is running, please do start on other process stop";
inline constexpr char kStopFirst[] = "error 1: not stop all service type, unregisterClient failed";
inline constexpr char kUnsubscribeFirst[] =
        "error 1: not unsubscribe all service type, unregisterClient failed";

/** The handle of the one client. */
inline constexpr int64_t kHandle = 1;

/** How long something may take that a correct service does soon. */
inline constexpr std::chrono::seconds kPatience{20};

/**
 * A client's callback: remembers the states and the last events that it was told, and does
 * something when told a state. Every call has to come with the client's handle. Owned by a Client.
 * Any thread may use it.
 */
class Receiver : public aon::BnAONServiceCallBack {
  public:
    /** A sensor and its state. */
    using State = std::pair<int32_t, int32_t>;
    using States = std::vector<State>;
    using Event = aon::AONCallBackInfo;

    ndk::ScopedAStatus onAONEvent(int64_t handle, const Event& info) override {
        EXPECT_EQ(handle, kHandle);
        const std::lock_guard lock(mMutex);
        ++mEventCount;
        if (mEvents.size() == kKept) mEvents.erase(mEvents.begin());
        mEvents.push_back(info);
        mChanged.notify_all();
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus onSensorStateChanged(int64_t handle,
                                            const aon::AONSensorStateInfo& info) override {
        EXPECT_EQ(handle, kHandle);
        std::unique_lock lock(mMutex);
        mStates.emplace_back(info.sensorId, info.state);
        const auto hook = mInState;
        lock.unlock();
        if (hook) hook();
        return ndk::ScopedAStatus::ok();
    }

    /** What to do in every state from now on. Null: nothing. */
    void SetInState(std::function<void()> hook) {
        const std::lock_guard lock(mMutex);
        mInState = std::move(hook);
    }
    /** Waits until there was an event, and takes those since the last time, at most the last kKept;
     * none if there was none in time. */
    std::vector<Event> AwaitEvent() {
        std::unique_lock lock(mMutex);
        mChanged.wait_for(lock, kPatience, [&] { return !mEvents.empty(); });
        return std::exchange(mEvents, {});
    }
    /** All states since the last time. */
    States TakeStates() {
        const std::lock_guard lock(mMutex);
        return std::exchange(mStates, {});
    }
    /** How many events there were, ever. */
    size_t EventCount() {
        const std::lock_guard lock(mMutex);
        return mEventCount;
    }

    static constexpr size_t kKept = 16;

  private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::function<void()> mInState;  // mMutex, as all below
    std::vector<Event> mEvents;
    States mStates;
    size_t mEventCount = 0;
};

inline constexpr char kInstance[] = "vendor.zarvo.hardware.camera.aon.IAONService/default";
inline constexpr int32_t kFusion = aon::IAONService::SERVICE_TYPE_FUSION;
inline constexpr int32_t kFaceAngle = aon::IAONService::SERVICE_TYPE_FACE_ANGLE;
inline constexpr int32_t kGaze = aon::IAONService::SERVICE_TYPE_GAZE;
inline constexpr int32_t kFaceFeature = aon::IAONService::SERVICE_TYPE_FACE_FEATURE;
inline constexpr int32_t kAllTypes = kFusion | kFaceAngle | kGaze | kFaceFeature;

/** The published service; null if nobody publishes it now. */
inline std::shared_ptr<aon::IAONService> FindService() {
    return aon::IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_checkService(kInstance)));
}

/** The service's sensors; none if it does not say. */
inline std::vector<aon::AONSensorInfo> Sensors(aon::IAONService& service) {
    std::vector<aon::AONSensorInfo> sensors;
    service.getAonSensorInfoList(&sensors);
    return sensors;
}

/** The first sensor, its first size at the highest rate, time-based; false if none is offered. */
inline bool FirstConfig(const std::vector<aon::AONSensorInfo>& sensors, int32_t types,
                        aon::SensorConfigInfo* config) {
    for (const auto& sensor : sensors) {
        for (const auto& size : sensor.frameInfos) {
            if (size.supportRates.empty()) continue;
            config->sensorId = sensor.sensorId;
            config->frameWidth = size.frameWidth;
            config->frameHeight = size.frameHeight;
            config->fps = *std::max_element(size.supportRates.begin(), size.supportRates.end());
            config->serviceType = types;
            config->deliveryMode = aon::IAONService::DELIVERY_MODE_TIME_BASED;
            return true;
        }
    }
    return false;
}

/**
 * A client of the service, with a callback of its own. It gives everything back when it goes,
 * whatever came before. Used by one thread, except for calls, which any may make.
 */
class Client {
  public:
    explicit Client(std::shared_ptr<aon::IAONService> target) : service(std::move(target)) {}
    ~Client() {
        receiver->SetInState(nullptr);
        if (mGiven == 0) return;
        service->unsubscribeSensor(mGiven);
        service->unregisterClient(mGiven);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Each gives the answer as text.
    std::string Register(int32_t types) {
        const auto status = service->registerClient(receiver, types, &handle);
        if (status.isOk()) mGiven = handle;
        return Answer(status);
    }
    std::string Subscribe(const aon::SensorConfigInfo& config) const {
        return Answer(service->subscribeSensor(handle, config));
    }
    std::string Start(int32_t types) const { return Answer(service->startService(handle, types)); }
    std::string Stop(int32_t types) const { return Answer(service->stopService(handle, types)); }
    std::string Unsubscribe() const { return Answer(service->unsubscribeSensor(handle)); }
    std::string Unregister() const { return Answer(service->unregisterClient(handle)); }

    const std::shared_ptr<aon::IAONService> service;
    const std::shared_ptr<Receiver> receiver = ndk::SharedRefBase::make<Receiver>();
    /** What registerClient gave; a test may put another number here. */
    int64_t handle = 0;

  private:
    /** The last one given; 0 if none. */
    int64_t mGiven = 0;
};

/** What another process of this program does as a client, until it is killed: one of the roles of
 * DeathTest.cpp. Main's exit status, if it ends before. */
int PlayRole(const std::string& role);

}  // namespace conformance
