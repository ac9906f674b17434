#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "host/binder/Loopback.h"
#include "host/demo/Narrator.h"

namespace zarvo::host::demo {

/**
 * A client of the service as if in a process of its own: it speaks through a loopback connection,
 * tells what it does and is told, and can be killed.
 */
class DemoClient {
  public:
    using IAONService = aidl::vendor::zarvo::hardware::camera::aon::IAONService;
    using SensorConfigInfo = aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

    DemoClient(std::string name, Narrator& narrator, const std::shared_ptr<IAONService>& target);

    // The operations of the service. Each tells its answer, which has to be `expected`.
    enum class Expected { kAccepted, kRefused };
    void ListSensors();
    void Register(int32_t serviceTypes);
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

    /** Ends the client's process without a word and waits until its death was noticed. */
    void Kill();

    int EventsSeen() const;
    int StatesSeen() const;

  private:
    class Callback;

    void Call(const std::string& what, const std::function<ndk::ScopedAStatus()>& call,
              Expected expected = Expected::kAccepted);

    const std::string mName;
    Narrator& mNarrator;
    const std::shared_ptr<Loopback> mConnection;
    const std::shared_ptr<IAONService> mService;
    const std::shared_ptr<Callback> mCallback;
    int64_t mHandle = 0;
};

}  // namespace zarvo::host::demo
