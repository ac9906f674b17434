#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include "tests/support/LogRecorder.h"

namespace zarvo::test {

/** A client's callback that remembers what it was told and can be made to do something then. */
class RecordingCallback : public aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack {
  public:
    using AONCallBackInfo = aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
    using AONSensorStateInfo = aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
    /** Sensor id and state. */
    using State = std::pair<int, int>;
    using Hook = std::function<void()>;

    /** Runs inside every event; set before the first. */
    void SetInEvent(Hook hook) { mInEvent = std::move(hook); }
    /** Runs inside every state notice; set before the first. */
    void SetInState(Hook hook) { mInState = std::move(hook); }

    ndk::ScopedAStatus onAONEvent(int64_t clientHandle, const AONCallBackInfo& info) override {
        Keep([&] {
            mHandle = clientHandle;
            mEvents.push_back(info);
        });
        if (mInEvent) mInEvent();
        return ndk::ScopedAStatus::ok();
    }

    ndk::ScopedAStatus onSensorStateChanged(int64_t clientHandle,
                                            const AONSensorStateInfo& info) override {
        Keep([&] {
            mHandle = clientHandle;
            mStates.emplace_back(info.sensorId, info.state);
        });
        if (mInState) mInState();
        return ndk::ScopedAStatus::ok();
    }

    bool WaitForEvents(size_t count) {
        return Wait([&] { return mEvents.size() >= count; });
    }
    bool WaitForStates(size_t count) {
        return Wait([&] { return mStates.size() >= count; });
    }
    std::vector<AONCallBackInfo> TakeEvents() {
        std::lock_guard lock(mMutex);
        return std::exchange(mEvents, {});
    }
    std::vector<State> TakeStates() {
        std::lock_guard lock(mMutex);
        return std::exchange(mStates, {});
    }
    /** The handle of the last call. */
    int64_t Handle() {
        std::lock_guard lock(mMutex);
        return mHandle;
    }

  private:
    template <typename Change>
    void Keep(Change change) {
        std::lock_guard lock(mMutex);
        change();
        mChanged.notify_all();
    }
    template <typename Condition>
    bool Wait(Condition condition) {
        std::unique_lock lock(mMutex);
        return mChanged.wait_for(lock, kPatience, condition);
    }

    Hook mInEvent;
    Hook mInState;
    std::mutex mMutex;
    std::condition_variable mChanged;
    int64_t mHandle = 0;
    std::vector<AONCallBackInfo> mEvents;
    std::vector<State> mStates;
};

}  // namespace zarvo::test
