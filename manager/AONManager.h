#pragma once

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "manager/IAONManagerCallback.h"
#include "manager/ManagerStatus.h"
#include "manager/SensorTypes.h"
#include "platform/History.h"
#include "platform/Mutex.h"
#include "platform/Published.h"
#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::aon {

/**
 * The one owner of the always-on-vision stream.
 *
 * Keeps one sensor configuration, runs at most one stream, forwards its events to one callback,
 * and yields the sensor to the regular camera.
 *
 *     stopped --StartService--> running        mOpenedSensorId is set, mServiceTypeStarted too
 *     running --StopService, NotifyOpen--> stopped
 *     running --StartService--> running        the old stream is stopped without a notice
 *
 * One per process (GetSingleton); lives until the process ends. Everything may be called from any
 * thread. The callback is never called under a lock of the manager's; events are dropped while
 * the manager is busy. The stream's operations are called with mMutex held, so none of them may
 * wait for a callback in flight.
 */
class AONManager : public std::enable_shared_from_this<AONManager>, public IAovStreamCallback {
  public:
    /** No callback, no stream, or a stream that did not start. */
    static constexpr int32_t kInvalid = -22;
    /** The sensor is held by an open camera device. */
    static constexpr int32_t kNoDevice = -19;

    /** The one instance; never null. */
    static std::shared_ptr<AONManager> GetSingleton();

    /** For GetSingleton, and for tests that want an instance of their own; always shared. */
    AONManager();
    /** Waits for a pending camera notification. The stream is left as it is. */
    ~AONManager() override;
    AONManager(const AONManager&) = delete;
    AONManager& operator=(const AONManager&) = delete;

    /** Sets who receives events and notices. @return 0, or kInvalid for null. */
    int32_t RegisterClient(const std::shared_ptr<IAONManagerCallback>& callback) EXCLUDES(mMutex);
    /** @return 0 */
    int32_t UnregisterClient() EXCLUDES(mMutex);

    /** Keeps the configuration for the next start; it is not checked. @return 0 */
    int32_t SubscribeSensor(const SensorConfig& config) EXCLUDES(mMutex);
    /** Forgets the configuration; a running stream goes on. @return 0 */
    int32_t UnsubscribeSensor() EXCLUDES(mMutex);

    /**
     * Runs the stream with these service types, in place of a running one, and reports the start.
     * @return 0, kNoDevice or kInvalid
     */
    int32_t StartService(int32_t serviceType) EXCLUDES(mMutex);
    /** Stops the stream and reports the stop, if it ran. @return 0 */
    int32_t StopService() EXCLUDES(mMutex);
    /** The service types of the running stream; 0 when it is stopped. */
    int32_t GetServiceTypeStarted() EXCLUDES(mMutex);

    /** Every set of service types is supported. */
    bool CheckServiceTypeSupport(const int32_t& serviceType);
    /**
     * Copies what the sensors offer into `out`. The stream is asked once, and again as long as it
     * lists no sensor; without a stream `out` stays as it is.
     */
    void GetAonSensorInfoList(std::vector<AonSensorInfo>& out) EXCLUDES(mMutex);

    void onCallback(aov_event* event) override EXCLUDES(mMutex);
    /**
     * Stops a running stream, whichever sensor the camera uses, and reports the camera's sensors
     * as busy from a thread of its own. With a receiver it returns when the notification before
     * this one is done, without one at once. Throws std::system_error when that thread cannot be
     * started.
     */
    void NotifyOpen(int instanceId) override EXCLUDES(mMutex, mNotifyMutex);
    /** Reports the camera's sensors as idle; otherwise like NotifyOpen. Starts no stream. */
    void NotifyClose(int instanceId) override EXCLUDES(mMutex, mNotifyMutex);

    // For people who look at the service. None of these takes a lock or waits.

    /** What runs and what is subscribed; nothing while it is being changed. */
    std::optional<ManagerStatus> Status() const { return mStatus.Get(); }
    const ManagerCounters& Counters() const { return mCounters; }
    /** The starts, the stops and the cameras. */
    std::vector<Change> LatestChanges() const { return mHistory.Latest(); }

  protected:
    /** Starts the stream with mUserParam. @return 0 or kInvalid */
    virtual int32_t InitAovStreamLocked() REQUIRES(mMutex);
    /** Brings running to stopped. @return 0 */
    virtual int32_t StopServiceLocked() REQUIRES(mMutex);
    /** Stops the stream; a refusal is only logged. @return 0 */
    virtual int32_t UninitAovStreamLocked() REQUIRES(mMutex);

  private:
    static constexpr char kWho[] = "AONManager";

    bool IsHeldByCameraLocked(int32_t sensorId) REQUIRES(mMutex);
    void FillUserParamLocked() REQUIRES(mMutex);
    int32_t StartStreamLocked(int32_t serviceType) REQUIRES(mMutex);
    void GetAonSensorInfoListLocked(std::vector<AonSensorInfo>& out) REQUIRES(mMutex);
    AonSensorInfo QuerySensorLocked(int32_t sensorId) REQUIRES(mMutex);
    void RecordOpenDeviceLocked(int32_t instanceId) REQUIRES(mMutex);
    int32_t SuspendStreamLocked() REQUIRES(mMutex);
    std::vector<int32_t> SensorsOfDeviceLocked(int32_t instanceId) REQUIRES(mMutex);
    void LaunchNotification(std::function<int()> notification) EXCLUDES(mMutex, mNotifyMutex);
    int ReportOpen(int32_t instanceId, int32_t stoppedSensorId) EXCLUDES(mMutex);
    int ReportClose(int32_t instanceId) EXCLUDES(mMutex);
    void NoteLocked(const Change& change) REQUIRES(mMutex);
    void PublishLocked() REQUIRES(mMutex);

    /** Made once, never replaced or released; null when there is no stream. */
    IAOVStream* const mAovStream;
    user_param mUserParam GUARDED_BY(mMutex){};
    bool mAovStreamInited GUARDED_BY(mMutex) = false;
    SensorConfig mSensorConfig GUARDED_BY(mMutex);
    int32_t mServiceTypeStarted GUARDED_BY(mMutex) = 0;
    std::shared_ptr<IAONManagerCallback> mCallback GUARDED_BY(mMutex);
    int32_t mOpenedSensorId GUARDED_BY(mMutex) = kNoSensor;
    /** The sensors of each open camera device, by its instance id. */
    std::unordered_map<int32_t, std::vector<int32_t>> mOpenDeviceMap GUARDED_BY(mMutex);
    Mutex mMutex{"AONManager::mMutex", LockRank::kLeaf};
    /** Keeps camera notifications in the order of their calls. */
    Mutex mNotifyMutex{"AONManager::mNotifyMutex", LockRank::kLeaf};
    std::future<int> mNotifyFuture GUARDED_BY(mNotifyMutex);
    std::vector<AonSensorInfo> mAonSensorInfoList GUARDED_BY(mMutex);

    /** Replaced under mMutex, as is the history. */
    Published<ManagerStatus> mStatus;
    History mHistory;
    ManagerCounters mCounters;
};

}  // namespace zarvo::aon
