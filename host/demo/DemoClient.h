#pragma once

#include <functional>
#include <memory>
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

    /**
     * Waits for that many more events with exactly these service types, and tells them. An event
     * from before the last start may still be on its way; it is passed over.
     */
    void WatchEvents(int32_t serviceTypes, int count);
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
