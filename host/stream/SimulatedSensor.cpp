#include "host/stream/SimulatedSensor.h"

#include <android/log.h>

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

#include "host/stream/SensorTable.h"

namespace zarvo::host {
namespace {

constexpr int32_t kMaxFrameRate = 120;
constexpr size_t kMaxCameraStatusCalls = 256;

}  // namespace

SimulatedSensor::SimulatedSensor() : mSensors(DefaultSensors()) {}

SimulatedSensor::~SimulatedSensor() {
    Close();
}

std::vector<int> SimulatedSensor::getSensorIdList() {
    const std::lock_guard lock(mMutex);
    std::vector<int> ids;
    for (const SensorDescription& sensor : mSensors)
        ids.push_back(sensor.id);
    return ids;
}

std::vector<aov_sensor_info> SimulatedSensor::getSensorInfo(int sensorId) {
    const std::lock_guard lock(mMutex);
    const SensorDescription* sensor = FindSensorLocked(sensorId);
    return sensor == nullptr ? std::vector<aov_sensor_info>{} : sensor->sizes;
}

int SimulatedSensor::getSensorMode(int sensorId, int* mode) {
    if (callFaults.getSensorMode.ShouldFail()) return -EIO;
    const std::lock_guard lock(mMutex);
    const SensorDescription* sensor = FindSensorLocked(sensorId);
    if (sensor == nullptr || mode == nullptr) return -EINVAL;
    *mode = sensor->mode;
    return 0;
}

bool SimulatedSensor::start(user_param* param) {
    const bool refused = callFaults.start.ShouldFail();
    const std::lock_guard lock(mMutex);
    ReapLocked();
    const char* fault = refused ? "refused as ordered" : StartFaultLocked(param);
    if (fault == nullptr) {
        mRun = NewRunLocked(*param);
        if (mRun == nullptr) fault = "no thread";
    }
    if (fault != nullptr) {
        __android_log_print(ANDROID_LOG_WARN, "SimulatedSensor", "start refused: %s", fault);
        return false;
    }
    mNotices.SetListener(param->AovStreamCallback);
    return true;
}

bool SimulatedSensor::notifyCameraStatus(const std::vector<int>& sensorIds, bool opened) {
    const std::lock_guard lock(mMutex);
    mCameraStatusCalls.push_back({sensorIds, opened});
    if (mCameraStatusCalls.size() > kMaxCameraStatusCalls) mCameraStatusCalls.pop_front();
    return !callFaults.notifyCameraStatus.ShouldFail();
}

bool SimulatedSensor::stop() {
    std::unique_lock lock(mMutex);
    const std::chrono::milliseconds delay = mStopDelay;
    lock.unlock();
    std::this_thread::sleep_for(delay);
    if (callFaults.stop.ShouldFail()) return false;
    lock.lock();
    if (mRun == nullptr) return false;
    mRun->Stop(mEventsAfterStop);
    mStoppedRuns.push_back(std::exchange(mRun, nullptr));
    ReapLocked();
    return true;
}

void SimulatedSensor::Close() {
    {
        const std::lock_guard lock(mMutex);
        mClosed = true;
    }
    Shutdown();
}

IAOVStream* SimulatedSensor::AsStream() {
    const std::lock_guard lock(mMutex);
    return mNoStream ? nullptr : this;
}

const SensorDescription* SimulatedSensor::FindSensorLocked(int sensorId) const {
    const auto found = std::find_if(mSensors.begin(), mSensors.end(),
                                    [&](const auto& sensor) { return sensor.id == sensorId; });
    return found == mSensors.end() ? nullptr : &*found;
}

const char* SimulatedSensor::StartFaultLocked(const user_param* param) const {
    if (mClosed) return "the process ends";
    if (param == nullptr) return "no start record";
    if (mRun != nullptr) return "a stream runs";
    if (FindSensorLocked(param->sensorId) == nullptr) return "unknown sensor";
    if (param->AovStreamCallback == nullptr) return "no callback";
    if (mReplay != nullptr) return nullptr;
    if (!FitsRecord(param->frameWidth, param->frameHeight)) return "impossible size";
    if (param->frameRate < 1 || param->frameRate > kMaxFrameRate) return "impossible rate";
    return nullptr;
}

std::shared_ptr<DeliveryRun> SimulatedSensor::NewRunLocked(const user_param& param) {
    auto run = std::make_shared<DeliveryRun>(param.AovStreamCallback, FramesLocked(param));
    if (!run->Launch()) return nullptr;
    for (const auto& stopped : mStoppedRuns)
        if (stopped->ByRequest()) stopped->Stop();
    return run;
}

std::shared_ptr<DeliveryRun> SimulatedSensor::CommandedRun() const {
    const std::lock_guard lock(mMutex);
    if (mRun != nullptr || mStoppedRuns.empty()) return mRun;
    return mStoppedRuns.back();
}

void SimulatedSensor::ReapLocked() {
    mStoppedRuns.remove_if([](const auto& run) { return run->Ended(); });
}

}  // namespace zarvo::host
