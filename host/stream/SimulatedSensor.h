#pragma once

#include <chrono>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

#include "host/stream/CameraNotices.h"
#include "host/stream/DeliveryRun.h"
#include "host/stream/Pace.h"
#include "host/stream/RecordWriter.h"
#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

/**
 * The simulated always-on-vision stream: a table of sensors, at most one started stream at a
 * time, and camera devices that come and go.
 *
 * One per process, see AovStream.cpp. Every operation of the stream may be called from any
 * thread, the callback's too, and waits for no callback. mMutex guards the state; no callback is
 * called under it, and of other locks only those of a run and of the notices are taken inside it.
 */
class SimulatedSensor final : public IAOVStream, public SimulatorControl {
  public:
    SimulatedSensor();
    ~SimulatedSensor() override;

    std::vector<int> getSensorIdList() override;
    std::vector<aov_sensor_info> getSensorInfo(int sensorId) override;
    int getSensorMode(int sensorId, int* mode) override;
    /** False when a stream runs, when the sensor is not in the table, when there is no callback,
     * or when size or rate are out of reach for a scene that is to be rendered; a size that the
     * sensor does not list is accepted. The reason is logged. */
    bool start(user_param* param) override;
    bool notifyCameraStatus(const std::vector<int>& sensorIds, bool opened) override;
    /** False when no stream runs. */
    bool stop() override;

    // The knobs are in SimulatorKnobs.cpp.
    void SetSeed(uint64_t seed) override;
    void SetCast(Cast cast) override;
    void SetSensors(std::vector<SensorDescription> sensors) override;
    void SetJitter(float fraction) override;
    void SetManualDelivery(bool manual) override;
    void SetReplay(std::shared_ptr<RecordSource> records) override;
    bool RequestFrame() override;
    bool DeliverOne() override;
    void SetNoStream(bool none) override;
    void SetRecordFaults(const RecordFaults& faults, uint64_t first, uint64_t count) override;
    void SetEventsAfterStop(uint32_t count) override;
    void SetStopDelay(std::chrono::milliseconds delay) override;
    void OpenCamera(int instanceId) override;
    void CloseCamera(int instanceId) override;
    void StormCamera(int instanceId, uint32_t cycles) override;
    std::vector<int> OpenCameras() const override;
    void WaitForCameraNotices() override;
    std::vector<CameraStatus> CameraStatusCalls() const override;
    bool Running() const override;
    void Shutdown() override;

    /** What createInstance() gives: this, or null. */
    IAOVStream* AsStream();
    /** Shutdown() for good: later starts are refused. */
    void Close();

  private:
    const SensorDescription* FindSensorLocked(int sensorId) const;
    /** Why this cannot be started; null when it can. */
    const char* StartFaultLocked(const user_param* param) const;
    std::shared_ptr<DeliveryRun> NewRunLocked(const user_param& param);
    /** The run that delivers by command, be it a stopped one. */
    std::shared_ptr<DeliveryRun> CommandedRun() const;
    /** Forgets the stopped runs whose threads have ended. */
    void ReapLocked();

    // What runs deliver, in SimulatorFrames.cpp.
    DeliveryRun::Source FramesLocked(const user_param& param);
    DeliveryRun::Source SceneFrames(const user_param& param);
    DeliveryRun::Source ReplayFrames(const std::shared_ptr<RecordSource>& replay);
    Pace::Period LatenessOfNext(Pace::Period period) const;
    aov_event* RenderNext(RenderConfig config, aov_event& record);
    /** What is to be delivered of a record, as the faults have it. */
    aov_event* WithFaults(aov_event& record);

    /** Held for all of a Shutdown(), and taken before mMutex. */
    std::mutex mShutdownMutex;
    mutable std::mutex mMutex;
    std::vector<SensorDescription> mSensors;
    uint64_t mSeed = 1;
    Cast mCast = Cast::kStory;
    /** Counts on from start to start, as the frame counter of a sensor does. */
    uint32_t mNextFrame = 0;
    float mJitter = 0;
    bool mManualDelivery = false;
    std::shared_ptr<RecordSource> mReplay;
    bool mNoStream = false;
    RecordFaults mRecordFaults;
    FaultPoint mRecordFaultPoint;
    uint32_t mEventsAfterStop = 0;
    std::chrono::milliseconds mStopDelay{0};
    bool mClosed = false;
    std::deque<CameraStatus> mCameraStatusCalls;
    std::shared_ptr<DeliveryRun> mRun;
    /** Stopped runs whose threads may still be inside a callback. */
    std::list<std::shared_ptr<DeliveryRun>> mStoppedRuns;

    CameraNotices mNotices;
};

}  // namespace zarvo::host
