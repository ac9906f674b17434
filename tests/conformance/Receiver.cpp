#include "tests/conformance/Receiver.h"

#include <gtest/gtest.h>

namespace conformance {

ndk::ScopedAStatus Receiver::onAONEvent(int64_t handle, const Event& info) {
    EXPECT_EQ(handle, kHandle);
    const std::lock_guard lock(mMutex);
    ++mEventCount;
    if (mEvents.size() == kKept) mEvents.erase(mEvents.begin());
    mEvents.push_back(info);
    mChanged.notify_all();
    return ndk::ScopedAStatus::ok();
}

ndk::ScopedAStatus Receiver::onSensorStateChanged(int64_t handle,
                                                  const aon::AONSensorStateInfo& info) {
    EXPECT_EQ(handle, kHandle);
    std::function<void()> hook;
    {
        const std::lock_guard lock(mMutex);
        mStates.emplace_back(info.sensorId, info.state);
        hook = mInState;
    }
    if (hook) hook();
    return ndk::ScopedAStatus::ok();
}

void Receiver::SetInState(std::function<void()> hook) {
    const std::lock_guard lock(mMutex);
    mInState = std::move(hook);
}

std::vector<Receiver::Event> Receiver::AwaitEvent() {
    std::unique_lock lock(mMutex);
    mChanged.wait_for(lock, kPatience, [&] { return !mEvents.empty(); });
    return std::exchange(mEvents, {});
}

Receiver::States Receiver::TakeStates() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mStates, {});
}

size_t Receiver::EventCount() {
    const std::lock_guard lock(mMutex);
    return mEventCount;
}

}  // namespace conformance
