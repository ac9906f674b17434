#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace zarvo::host::soak {

/** Generous: on a busy machine a step takes a while. */
inline constexpr std::chrono::seconds kPatience{20};

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

inline constexpr int32_t kTypes = IAONService::SERVICE_TYPE_FUSION;
/** The smallest picture at the highest rate. */
SensorConfigInfo Config();

/**
 * A client's callback that counts what it is told, and holds it to what it was told to expect. The
 * service calls it on any thread; the rest is for one thread.
 */
class Client : public aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack {
  public:
    /** What else than its cycle a sensor may be told: nothing; or, when it is started and stopped
     * beside that, the last state again, and anywhere that it is started. */
    enum class Besides { kNothing, kStarts };

    /** Every sensor is to be told these states, over and over, in this order. */
    explicit Client(std::vector<int> cycle, Besides besides = Besides::kNothing)
        : mCycle(std::move(cycle)), mBesides(besides) {}

    ndk::ScopedAStatus onAONEvent(int64_t clientHandle, const AONCallBackInfo& info) override;
    ndk::ScopedAStatus onSensorStateChanged(int64_t clientHandle,
                                            const AONSensorStateInfo& info) override;

    /** How many events came so far, and how many states of a sensor. */
    uint64_t Events() const;
    uint64_t States(int sensor) const;
    /** False if that many do not come in time. */
    bool AwaitEvents(uint64_t count);
    bool AwaitStates(uint64_t count, int sensor);
    /** Whether every sensor has been told whole cycles only. */
    bool IsAtEndOfCycle() const;
    /** Keeps the events that come from now on, up to so many. */
    void Keep(size_t events);
    std::vector<AONCallBackInfo> TakeKept();
    /** The first thing that was not as expected; empty if all was. */
    std::string Surprise() const;

  private:
    /** Whether a state that a sensor is told after so many others is none of its cycle's. */
    bool IsBesides(int state, uint64_t told) const;

    const std::vector<int> mCycle;
    const Besides mBesides;
    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    uint64_t mEvents = 0;
    /** How often each sensor was told a state of its cycle. */
    std::map<int, uint64_t> mTold;
    size_t mToKeep = 0;
    std::vector<AONCallBackInfo> mKept;
    std::string mSurprise;
};

}  // namespace zarvo::host::soak
