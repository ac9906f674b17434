#include "host/stream/SimulatedSensor.h"

#include <android/log.h>

#include <algorithm>
#include <cerrno>
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
    if (callFaults.stop.ShouldFail()) return false;
    const std::lock_guard lock(mMutex);
    if (mRun == nullptr) return false;
    mRun->Stop();
    mStoppedRuns.push_back(std::exchange(mRun, nullptr));
    ReapLocked();
    return true;
}

void SimulatedSensor::SetNoStream(bool none) {
    const std::lock_guard lock(mMutex);
    mNoStream = none;
}

void SimulatedSensor::SetSensors(std::vector<SensorDescription> sensors) {
    const std::lock_guard lock(mMutex);
    mSensors = std::move(sensors);
}

void SimulatedSensor::SetSeed(uint64_t seed) {
    const std::lock_guard lock(mMutex);
    mSeed = seed;
    mNextFrame = 0;
}

void SimulatedSensor::SetManualDelivery(bool manual) {
    const std::lock_guard lock(mMutex);
    mManualDelivery = manual;
}

void SimulatedSensor::SetRecordFaults(const RecordFaults& faults) {
    const std::lock_guard lock(mMutex);
    mRecordFaults = faults;
}

bool SimulatedSensor::RequestFrame() {
    const std::shared_ptr<DeliveryRun> run = CurrentRun();
    return run != nullptr && run->RequestFrame();
}

bool SimulatedSensor::DeliverOne() {
    const std::shared_ptr<DeliveryRun> run = CurrentRun();
    return run != nullptr && run->DeliverOne();
}

void SimulatedSensor::OpenCamera(int instanceId) {
    mNotices.Open(instanceId);
}

void SimulatedSensor::CloseCamera(int instanceId) {
    mNotices.Close(instanceId);
}

void SimulatedSensor::WaitForCameraNotices() {
    mNotices.WaitUntilDelivered();
}

std::vector<CameraStatus> SimulatedSensor::CameraStatusCalls() const {
    const std::lock_guard lock(mMutex);
    return {mCameraStatusCalls.begin(), mCameraStatusCalls.end()};
}

bool SimulatedSensor::Running() const {
    const std::lock_guard lock(mMutex);
    return mRun != nullptr;
}

void SimulatedSensor::Shutdown() {
    // Notices first: a camera that opened may want to stop the stream itself.
    mNotices.Shutdown();
    std::list<std::shared_ptr<DeliveryRun>> runs;
    {
        const std::lock_guard lock(mMutex);
        if (mRun != nullptr) mStoppedRuns.push_back(std::exchange(mRun, nullptr));
        runs.swap(mStoppedRuns);
    }
    for (const auto& run : runs)
        run->Stop();
    for (const auto& run : runs)
        run->Join();
}

IAOVStream* SimulatedSensor::AsStream() {
    const std::lock_guard lock(mMutex);
    return mNoStream ? nullptr : this;
}

void SimulatedSensor::Close() {
    {
        const std::lock_guard lock(mMutex);
        mClosed = true;
    }
    Shutdown();
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
    if (!FitsRecord(param->frameWidth, param->frameHeight)) return "impossible size";
    if (param->frameRate < 1 || param->frameRate > kMaxFrameRate) return "impossible rate";
    return nullptr;
}

std::shared_ptr<DeliveryRun> SimulatedSensor::NewRunLocked(const user_param& param) {
    const RenderConfig config{.seed = mSeed,
                              .width = param.frameWidth,
                              .height = param.frameHeight,
                              .frameRate = param.frameRate,
                              .serviceTypes = param.serviceType};
    const auto period = mManualDelivery
                                ? DeliveryRun::Period::zero()
                                : DeliveryRun::Period(std::chrono::seconds(1)) / param.frameRate;
    auto run = std::make_shared<DeliveryRun>(
            period, param.AovStreamCallback,
            [this, config](aov_event& record) { return RenderNext(config, record); });
    return run->Launch() ? run : nullptr;
}

std::shared_ptr<DeliveryRun> SimulatedSensor::CurrentRun() const {
    const std::lock_guard lock(mMutex);
    return mRun;
}

void SimulatedSensor::ReapLocked() {
    mStoppedRuns.remove_if([](const auto& run) { return run->Ended(); });
}

aov_event* SimulatedSensor::RenderNext(const RenderConfig& config, aov_event& record) {
    std::unique_lock lock(mMutex);
    const uint32_t frame = mNextFrame++;
    const RecordFaults faults = mRecordFaults;
    lock.unlock();
    RenderScene(config, frame, record);
    ApplyFaults(faults, record);
    return faults.nullEvent ? nullptr : &record;
}

}  // namespace zarvo::host
