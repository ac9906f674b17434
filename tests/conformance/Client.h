#pragma once

#include <memory>
#include <string>

#include "tests/conformance/Answer.h"
#include "tests/conformance/Receiver.h"

namespace conformance {

inline constexpr char kInstance[] = "vendor.zarvo.hardware.camera.aon.IAONService/default";
inline constexpr int32_t kFusion = aon::IAONService::SERVICE_TYPE_FUSION;
inline constexpr int32_t kFaceAngle = aon::IAONService::SERVICE_TYPE_FACE_ANGLE;
inline constexpr int32_t kGaze = aon::IAONService::SERVICE_TYPE_GAZE;
inline constexpr int32_t kFaceFeature = aon::IAONService::SERVICE_TYPE_FACE_FEATURE;
inline constexpr int32_t kAllTypes = kFusion | kFaceAngle | kGaze | kFaceFeature;

/** The published service; null if nobody publishes it now. */
std::shared_ptr<aon::IAONService> FindService();

/** The service's sensors; none if it does not say. */
std::vector<aon::AONSensorInfo> Sensors(aon::IAONService& service);

/** The first sensor, its first size at the highest rate, time-based; false if none is offered. */
bool FirstConfig(const std::vector<aon::AONSensorInfo>& sensors, int32_t types,
                 aon::SensorConfigInfo* config);

/**
 * A client of the service, with a callback of its own. It gives everything back when it goes,
 * whatever came before. Used by one thread, except for calls, which any may make.
 */
class Client {
  public:
    explicit Client(std::shared_ptr<aon::IAONService> target) : service(std::move(target)) {}
    ~Client() {
        receiver->SetInState(nullptr);
        if (mGiven == 0) return;
        service->unsubscribeSensor(mGiven);
        service->unregisterClient(mGiven);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Each gives the answer as text.
    std::string Register(int32_t types) {
        const auto status = service->registerClient(receiver, types, &handle);
        if (status.isOk()) mGiven = handle;
        return Answer(status);
    }
    std::string Subscribe(const aon::SensorConfigInfo& config) const {
        return Answer(service->subscribeSensor(handle, config));
    }
    std::string Start(int32_t types) const { return Answer(service->startService(handle, types)); }
    std::string Stop(int32_t types) const { return Answer(service->stopService(handle, types)); }
    std::string Unsubscribe() const { return Answer(service->unsubscribeSensor(handle)); }
    std::string Unregister() const { return Answer(service->unregisterClient(handle)); }

    const std::shared_ptr<aon::IAONService> service;
    const std::shared_ptr<Receiver> receiver = ndk::SharedRefBase::make<Receiver>();
    /** What registerClient gave; a test may put another number here. */
    int64_t handle = 0;

  private:
    /** The last one given; 0 if none. */
    int64_t mGiven = 0;
};

}  // namespace conformance
