#include <algorithm>
#include <utility>

#include "host/stream/SimulatedSensor.h"

namespace zarvo::host {

void SimulatedSensor::SetSeed(uint64_t seed) {
    const std::lock_guard lock(mMutex);
    mSeed = seed;
    mNextFrame = 0;
}

void SimulatedSensor::SetCast(Cast cast) {
    const std::lock_guard lock(mMutex);
    mCast = cast;
}

void SimulatedSensor::SetSensors(std::vector<SensorDescription> sensors) {
    const std::lock_guard lock(mMutex);
    mSensors = std::move(sensors);
}

void SimulatedSensor::SetJitter(float fraction) {
    const std::lock_guard lock(mMutex);
    // Written so that what is no number is none at all.
    mJitter = fraction > 0 ? std::min(fraction, 1.0F) : 0;
}

void SimulatedSensor::SetManualDelivery(bool manual) {
    const std::lock_guard lock(mMutex);
    mManualDelivery = manual;
}

void SimulatedSensor::SetReplay(std::shared_ptr<RecordSource> records) {
    {
        const std::lock_guard lock(mMutex);
        mReplay.swap(records);
    }
    // The one before ends here, without the lock, if no run has it.
}

bool SimulatedSensor::RequestFrame() {
    const std::shared_ptr<DeliveryRun> run = CommandedRun();
    return run != nullptr && run->RequestFrame();
}

bool SimulatedSensor::DeliverOne() {
    const std::shared_ptr<DeliveryRun> run = CommandedRun();
    return run != nullptr && run->DeliverOne();
}

void SimulatedSensor::SetNoStream(bool none) {
    const std::lock_guard lock(mMutex);
    mNoStream = none;
}

void SimulatedSensor::SetRecordFaults(const RecordFaults& faults, uint64_t first, uint64_t count) {
    const std::lock_guard lock(mMutex);
    mRecordFaults = faults;
    mRecordFaultPoint.FailCalls(first, count);
}

void SimulatedSensor::SetEventsAfterStop(uint32_t count) {
    const std::lock_guard lock(mMutex);
    mEventsAfterStop = count;
}

void SimulatedSensor::SetStopDelay(std::chrono::milliseconds delay) {
    const std::lock_guard lock(mMutex);
    mStopDelay = delay;
}

void SimulatedSensor::OpenCamera(int instanceId) {
    mNotices.Open(instanceId);
}

void SimulatedSensor::CloseCamera(int instanceId) {
    mNotices.Close(instanceId);
}

void SimulatedSensor::StormCamera(int instanceId, uint32_t cycles) {
    mNotices.Storm(instanceId, cycles);
}

std::vector<int> SimulatedSensor::OpenCameras() const {
    return mNotices.OpenDevices();
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
    // Whoever comes second waits, too, for the callbacks that the first one waits for.
    const std::lock_guard oneAtATime(mShutdownMutex);
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

}  // namespace zarvo::host
