#include "tests/conformance/Receiver.h"

#include <algorithm>

namespace conformance {

ndk::ScopedAStatus Receiver::onAONEvent(int64_t handle, const Event& info) {
    const std::lock_guard lock(mMutex);
    NoteHandleLocked(handle);
    ++mEventCount;
    if (mEvents.size() == kKept) mEvents.erase(mEvents.begin());
    mEvents.push_back(info);
    mChanged.notify_all();
    return ndk::ScopedAStatus::ok();
}

ndk::ScopedAStatus Receiver::onSensorStateChanged(int64_t handle,
                                                  const aon::AONSensorStateInfo& info) {
    std::function<void()> hook;
    {
        const std::lock_guard lock(mMutex);
        NoteHandleLocked(handle);
        mStates.emplace_back(info.sensorId, info.state);
        hook = mInState;
    }
    if (hook) hook();
    return ndk::ScopedAStatus::ok();
}

void Receiver::NoteHandleLocked(int64_t handle) {
    if (std::find(mHandles.begin(), mHandles.end(), handle) == mHandles.end()) {
        mHandles.push_back(handle);
    }
}

void Receiver::SetInState(std::function<void()> hook) {
    const std::lock_guard lock(mMutex);
    mInState = std::move(hook);
}

std::vector<Receiver::Event> Receiver::AwaitEvent(const std::function<bool(const Event&)>& fits) {
    std::unique_lock lock(mMutex);
    const bool came = mChanged.wait_for(
            lock, kPatience, [&] { return std::any_of(mEvents.begin(), mEvents.end(), fits); });
    return came ? std::exchange(mEvents, {}) : std::vector<Event>();
}

std::vector<Receiver::Event> Receiver::AwaitEvent() {
    return AwaitEvent([](const Event&) { return true; });
}

Receiver::States Receiver::TakeStates() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mStates, {});
}

size_t Receiver::EventCount() {
    const std::lock_guard lock(mMutex);
    return mEventCount;
}

std::vector<int64_t> Receiver::Handles() {
    const std::lock_guard lock(mMutex);
    return mHandles;
}

}  // namespace conformance
