#include "host/demo/DemoClient.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include "host/text/EventText.h"

namespace zarvo::host::demo {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack;

namespace {

constexpr std::chrono::seconds kPatience{10};

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

}  // namespace

/** What the client implements for the service to call. */
class DemoClient::Callback : public BnAONServiceCallBack {
  public:
    Callback(std::string name, Narrator& narrator) : mName(std::move(name)), mNarrator(narrator) {}

    ndk::ScopedAStatus onAONEvent(int64_t /*clientHandle*/, const AONCallBackInfo& info) override {
        std::lock_guard lock(mMutex);
        ++mEvents;
        if (mLeftToWatch > 0 && IsWatchedLocked(info)) {
            --mLeftToWatch;
            mNarrator.Tell(mName, "  event " + EventText(info));
        }
        mChanged.notify_all();
        return ndk::ScopedAStatus::ok();
    }

    ndk::ScopedAStatus onSensorStateChanged(int64_t /*clientHandle*/,
                                            const AONSensorStateInfo& info) override {
        mNarrator.Tell(mName, "  told: " + StateText(info));
        std::lock_guard lock(mMutex);
        ++mStates;
        mLastStates[info.sensorId] = info.state;
        mChanged.notify_all();
        return ndk::ScopedAStatus::ok();
    }

    bool WatchEvents(const Watch& watch, int count) {
        std::unique_lock lock(mMutex);
        mWatch = watch;
        mLeftToWatch = count;
        return mChanged.wait_for(lock, kPatience, [&] { return mLeftToWatch == 0; });
    }
    bool AwaitState(int32_t sensorId, int32_t state) {
        std::unique_lock lock(mMutex);
        return mChanged.wait_for(lock, kPatience, [&] {
            const auto last = mLastStates.find(sensorId);
            return last != mLastStates.end() && last->second == state;
        });
    }
    std::pair<int, int> Counts() {
        std::lock_guard lock(mMutex);
        return {mEvents, mStates};
    }

  private:
    bool IsWatchedLocked(const AONCallBackInfo& info) const {
        const bool anyFaces = !mWatch.faces.has_value();
        return info.serviceType == mWatch.serviceTypes &&
               (anyFaces || FaceCount(info) == mWatch.faces);
    }

    const std::string mName;
    Narrator& mNarrator;
    std::mutex mMutex;
    std::condition_variable mChanged;
    int mEvents = 0;
    int mStates = 0;
    Watch mWatch;
    /** How many events are still to be told; others are only counted. */
    int mLeftToWatch = 0;
    std::map<int32_t, int32_t> mLastStates;
};

DemoClient::DemoClient(std::string name, Narrator& narrator,
                       const std::shared_ptr<IAONService>& target)
    : mName(std::move(name)),
      mNarrator(narrator),
      mConnection(Loopback::Connect(target->asBinder().get())),
      mService(IAONService::fromBinder(mConnection->Root())),
      mCallback(ndk::SharedRefBase::make<Callback>(mName, narrator)) {}

void DemoClient::Call(const std::string& what, const std::function<ndk::ScopedAStatus()>& call,
                      Expected expected) {
    mNarrator.Tell(mName, what);
    const ndk::ScopedAStatus status = call();
    const bool accepted = status.isOk();
    mNarrator.Tell(mName, "  -> " + (accepted ? "OK" : "refused: " + status.getDescription()));
    mNarrator.Check(accepted == (expected == Expected::kAccepted), what);
}

void DemoClient::ListSensors() {
    std::vector<AONSensorInfo> sensors;
    Call("getAonSensorInfoList()", [&] { return mService->getAonSensorInfoList(&sensors); });
    for (const AONSensorInfo& sensor : sensors)
        mNarrator.Remark("     " + SensorText(sensor));
    mNarrator.Check(!sensors.empty(), "there are sensors");
}

void DemoClient::Register(int32_t serviceTypes) {
    Call("registerClient(" + ServiceTypesText(serviceTypes) + ")",
         [&] { return mService->registerClient(mCallback, serviceTypes, &mHandle); });
    mNarrator.Tell(mName, "     handle " + std::to_string(mHandle));
}

void DemoClient::Subscribe(const SensorConfigInfo& config) {
    Call("subscribeSensor(sensor " + std::to_string(config.sensorId) + ", " +
                 std::to_string(config.frameWidth) + "x" + std::to_string(config.frameHeight) +
                 " at " + std::to_string(config.fps) + " fps, " +
                 ServiceTypesText(config.serviceType) + ")",
         [&] { return mService->subscribeSensor(mHandle, config); });
}

void DemoClient::Start(int32_t serviceTypes, Expected expected) {
    Call(
            "startService(" + ServiceTypesText(serviceTypes) + ")",
            [&] { return mService->startService(mHandle, serviceTypes); }, expected);
}

void DemoClient::Stop(int32_t serviceTypes) {
    Call("stopService(" + ServiceTypesText(serviceTypes) + ")",
         [&] { return mService->stopService(mHandle, serviceTypes); });
}

void DemoClient::Unsubscribe() {
    Call("unsubscribeSensor()", [&] { return mService->unsubscribeSensor(mHandle); });
}

void DemoClient::Unregister() {
    Call("unregisterClient()", [&] { return mService->unregisterClient(mHandle); });
}

void DemoClient::WatchEvents(const Watch& watch, int count) {
    mNarrator.Check(mCallback->WatchEvents(watch, count), mName + " gets events");
}

void DemoClient::AwaitState(int32_t sensorId, int32_t state) {
    mNarrator.Check(mCallback->AwaitState(sensorId, state),
                    mName + " is told state " + std::to_string(state));
}

void DemoClient::Kill() {
    mNarrator.Tell(mName, "dies without a word");
    mConnection->Kill();
    mConnection->WaitForNotices();
}

int DemoClient::EventsSeen() const {
    return mCallback->Counts().first;
}

int DemoClient::StatesSeen() const {
    return mCallback->Counts().second;
}

}  // namespace zarvo::host::demo
