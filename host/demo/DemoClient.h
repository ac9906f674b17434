#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host/demo/Actor.h"

namespace zarvo::host::demo {

/**
 * A client of the service in a process of its own: what it does and is told is told here, whenever
 * the stage hears it.
 */
class DemoClient {
  public:
    using IAONService = aidl::vendor::zarvo::hardware::camera::aon::IAONService;
    using SensorConfigInfo = aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

    DemoClient(std::string name, Stage& stage, Narrator& narrator);

    // The operations of the service. Each tells its answer, which has to be `expected`.
    enum class Expected { kAccepted, kRefused };
    void ListSensors();
    void Register(int32_t serviceTypes);
    /** The delivery mode is time-based. */
    void Subscribe(const SensorConfigInfo& config);
    void Start(int32_t serviceTypes, Expected expected = Expected::kAccepted);
    void Stop(int32_t serviceTypes);
    void Unsubscribe();
    void Unregister();

    /** Which events to watch for. */
    struct Watch {
        /** Exactly these. */
        int32_t serviceTypes = 0;
        /** How many faces the event tells of; any number, when there is none here. */
        std::optional<int32_t> faces = std::nullopt;
    };
    /**
     * Waits for that many more such events, and tells them. Others are passed over: one from
     * before the last start, or the last change of the scene, may still be on its way.
     */
    void WatchEvents(const Watch& watch, int count);
    /** Waits until the last state told of the sensor is this one. */
    void AwaitState(int32_t sensorId, int32_t state);

    /** Lets its process end in good order. */
    void Leave();
    /** Kills its process with SIGKILL. */
    void Kill();

    Actor& GetActor() { return mActor; }
    int EventsSeen() const { return mEvents; }
    int StatesSeen() const { return mStates; }

  private:
    void Call(const std::string& what, const std::string& command,
              Expected expected = Expected::kAccepted);
    void OnFact(std::string_view kind, std::string_view text);
    void OnEvent(std::string_view text);
    void OnState(std::string_view text);
    bool IsWatched(int64_t serviceTypes, int64_t faces) const;

    const std::string mName;
    Stage& mStage;
    Narrator& mNarrator;
    int mSensors = 0;
    int mEvents = 0;
    int mStates = 0;
    Watch mWatch;
    /** How many events are still to be told; others are only counted. */
    int mLeftToWatch = 0;
    std::map<int64_t, int64_t> mLastStates;
    Actor mActor;
};

}  // namespace zarvo::host::demo
