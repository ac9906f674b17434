#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/common/FaultPoint.h"
#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::test {

/**
 * The platform's stream as a test dictates it: in every program that links scripted_stream,
 * `IAOVStream::createInstance` gives this one. It has no thread: it delivers only what the test
 * delivers, on the test's thread.
 *
 * One per process. The script may be changed and the record read from any thread at any time.
 */
class ScriptedStream : public IAOVStream {
  public:
    using Hook = std::function<void()>;
    using Sensors = std::vector<std::pair<int, std::vector<aov_sensor_info>>>;

    static ScriptedStream& Instance();
    /** A capability record. */
    static aov_sensor_info Record(int32_t width, int32_t height, int32_t info,
                                  std::vector<int32_t> rates);

    // The script.

    /** Lets createInstance() give null. */
    void SetNoStream(bool none) { Set(mNoStream, none); }
    /** The sensors in the order that getSensorIdList() gives, with their capability records. */
    void SetSensors(Sensors sensors) { Set(mSensors, std::move(sensors)); }
    /** What getSensorMode() answers for the sensor; 0 and mode 0 unless set. */
    void SetMode(int sensorId, int status, int mode);
    /** Run inside start(), stop() and notifyCameraStatus(), before they answer. */
    void SetHooks(Hook inStart, Hook inStop, Hook inNotify = {});
    /** Which calls are refused, by number. */
    host::FaultPoint startFault, stopFault, notifyFault;

    // The record.

    /** Every call in order: "getSensorIdList", "getSensorInfo 2", "getSensorMode 2", "start 0",
     * "stop", "notify open 0,2", "notify close". The list is then empty. */
    std::vector<std::string> TakeCalls();
    /** The start records in order, also of refused starts, each without its callback. */
    std::vector<user_param> Starts() const { return Get(mStarts); }
    /** The same; they are then forgotten. */
    std::vector<user_param> TakeStarts();
    /** The callback of the last accepted start, as long as anyone holds it. */
    std::shared_ptr<IAovStreamCallback> Callback() const { return Get(mLastCallback).lock(); }
    /** Whether the stream was started and not stopped since. */
    bool Running() const { return Get(mRunning); }

    std::vector<int> getSensorIdList() override;
    std::vector<aov_sensor_info> getSensorInfo(int sensorId) override;
    int getSensorMode(int sensorId, int* mode) override;
    bool start(user_param* param) override;
    bool notifyCameraStatus(const std::vector<int>& sensorIds, bool opened) override;
    bool stop() override;

    /** What createInstance() answers. */
    IAOVStream* Create() { return Get(mNoStream) ? nullptr : this; }

  private:
    struct Mode {
        int status = 0;
        int bits = 0;
    };

    template <typename T>
    T Get(const T& member) const {
        const std::lock_guard lock(mMutex);
        return member;
    }
    template <typename T>
    void Set(T& member, T value) {
        const std::lock_guard lock(mMutex);
        member = std::move(value);
    }
    /** Notes the call and runs the hook without holding the mutex. */
    void Note(std::string call, Hook ScriptedStream::*hook = nullptr);

    mutable std::mutex mMutex;
    bool mNoStream = false;
    Sensors mSensors;
    std::map<int, Mode> mModes;
    Hook mInStart, mInStop, mInNotify;
    std::vector<std::string> mCalls;
    std::vector<user_param> mStarts;
    std::weak_ptr<IAovStreamCallback> mLastCallback;
    /** Shared from start to stop, as the platform's stream does. */
    std::shared_ptr<IAovStreamCallback> mRunningCallback;
    bool mRunning = false;
};

}  // namespace zarvo::test
