#include "host/soak/Client.h"

#include <algorithm>
#include <utility>

namespace zarvo::host::soak {

SensorConfigInfo Config() {
    SensorConfigInfo config;
    config.sensorId = 0;
    config.frameWidth = 320;
    config.frameHeight = 240;
    config.fps = 30;
    config.serviceType = kTypes;
    config.deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
    return config;
}

ndk::ScopedAStatus Client::onAONEvent(int64_t, const AONCallBackInfo& info) {
    const std::lock_guard lock(mMutex);
    ++mEvents;
    if (mKept.size() < mToKeep) mKept.push_back(info);
    mChanged.notify_all();
    return ndk::ScopedAStatus::ok();
}

ndk::ScopedAStatus Client::onSensorStateChanged(int64_t, const AONSensorStateInfo& info) {
    const std::lock_guard lock(mMutex);
    uint64_t& told = mTold[info.sensorId];
    if (IsBesides(info.state, told)) return ndk::ScopedAStatus::ok();
    const uint64_t number = told++;
    const int due = mCycle[number % mCycle.size()];
    if (info.state != due && mSurprise.empty()) {
        mSurprise = "state " + std::to_string(number + 1) + " of sensor " +
                    std::to_string(info.sensorId) + " was " + std::to_string(info.state) +
                    ", not " + std::to_string(due);
    }
    mChanged.notify_all();
    return ndk::ScopedAStatus::ok();
}

bool Client::IsBesides(int state, uint64_t told) const {
    if (mBesides == Besides::kNothing) return false;
    const bool repeats = told % mCycle.size() == 0 && state == mCycle.back();
    return repeats || state == AONSensorStateInfo::SENSOR_STATE_STARTED;
}

uint64_t Client::Events() const {
    const std::lock_guard lock(mMutex);
    return mEvents;
}

uint64_t Client::States(int sensor) const {
    const std::lock_guard lock(mMutex);
    const auto told = mTold.find(sensor);
    return told == mTold.end() ? 0 : told->second;
}

bool Client::AwaitEvents(uint64_t count) {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [&] { return mEvents >= count; });
}

bool Client::AwaitStates(uint64_t count, int sensor) {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [&] { return mTold[sensor] >= count; });
}

bool Client::IsAtEndOfCycle() const {
    const std::lock_guard lock(mMutex);
    return std::all_of(mTold.begin(), mTold.end(),
                       [&](const auto& told) { return told.second % mCycle.size() == 0; });
}

void Client::Keep(size_t events) {
    const std::lock_guard lock(mMutex);
    mToKeep = events;
}

std::vector<AONCallBackInfo> Client::TakeKept() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mKept, {});
}

std::string Client::Surprise() const {
    const std::lock_guard lock(mMutex);
    return mSurprise;
}

}  // namespace zarvo::host::soak
