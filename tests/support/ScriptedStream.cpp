#include "tests/support/ScriptedStream.h"

#include <algorithm>
#include <utility>

IAOVStream* IAOVStream::createInstance() {
    return zarvo::test::ScriptedStream::Instance().Create();
}

namespace zarvo::test {

ScriptedStream& ScriptedStream::Instance() {
    static auto* const stream = new ScriptedStream();
    return *stream;
}

aov_sensor_info ScriptedStream::Record(int32_t width, int32_t height, int32_t info,
                                       std::vector<int32_t> rates) {
    aov_sensor_info record{};
    record.width = width;
    record.height = height;
    record.info = info;
    record.rates = std::move(rates);
    return record;
}

void ScriptedStream::SetMode(int sensorId, int status, int mode) {
    const std::lock_guard lock(mMutex);
    mModes[sensorId] = {status, mode};
}

void ScriptedStream::SetHooks(Hook inStart, Hook inStop, Hook inNotify) {
    const std::lock_guard lock(mMutex);
    mInStart = std::move(inStart);
    mInStop = std::move(inStop);
    mInNotify = std::move(inNotify);
}

std::vector<std::string> ScriptedStream::TakeCalls() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mCalls, {});
}

std::vector<user_param> ScriptedStream::TakeStarts() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mStarts, {});
}

void ScriptedStream::Note(std::string call, Hook ScriptedStream::*hook) {
    Hook run;
    {
        const std::lock_guard lock(mMutex);
        mCalls.push_back(std::move(call));
        if (hook != nullptr) run = this->*hook;
    }
    if (run) run();
}

std::vector<int> ScriptedStream::getSensorIdList() {
    Note("getSensorIdList");
    std::vector<int> ids;
    for (const auto& [id, records] : Get(mSensors))
        ids.push_back(id);
    return ids;
}

std::vector<aov_sensor_info> ScriptedStream::getSensorInfo(int sensorId) {
    Note("getSensorInfo " + std::to_string(sensorId));
    const std::lock_guard lock(mMutex);
    const auto found = std::find_if(mSensors.begin(), mSensors.end(),
                                    [&](const auto& sensor) { return sensor.first == sensorId; });
    return found == mSensors.end() ? std::vector<aov_sensor_info>{} : found->second;
}

int ScriptedStream::getSensorMode(int sensorId, int* mode) {
    Note("getSensorMode " + std::to_string(sensorId));
    const std::lock_guard lock(mMutex);
    const Mode& answer = mModes[sensorId];
    if (mode != nullptr) *mode = answer.bits;
    return answer.status;
}

bool ScriptedStream::start(user_param* param) {
    Note("start " + std::to_string(param->sensorId), &ScriptedStream::mInStart);
    const bool refused = startFault.ShouldFail();
    const std::lock_guard lock(mMutex);
    mStarts.push_back(*param);
    mStarts.back().AovStreamCallback.reset();
    if (refused) return false;
    mLastCallback = mRunningCallback = param->AovStreamCallback;
    mRunning = true;
    return true;
}

bool ScriptedStream::notifyCameraStatus(const std::vector<int>& sensorIds, bool opened) {
    std::string call = opened ? "notify open" : "notify close";
    for (size_t i = 0; i < sensorIds.size(); ++i)
        call += (i == 0 ? " " : ",") + std::to_string(sensorIds[i]);
    Note(std::move(call), &ScriptedStream::mInNotify);
    return !notifyFault.ShouldFail();
}

bool ScriptedStream::stop() {
    Note("stop", &ScriptedStream::mInStop);
    if (stopFault.ShouldFail()) return false;
    // The callback is let go after the lock: its last holder may be this one.
    std::shared_ptr<IAovStreamCallback> released;
    const std::lock_guard lock(mMutex);
    mRunning = false;
    released = std::move(mRunningCallback);
    return true;
}

}  // namespace zarvo::test
