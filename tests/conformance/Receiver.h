#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace conformance {

namespace aon = aidl::vendor::zarvo::hardware::camera::aon;

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

}  // namespace conformance
