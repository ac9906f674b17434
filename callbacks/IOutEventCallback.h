#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

namespace zarvo::aon {

/** Receives finished records and brings them to the clients, on the calling thread. */
class IOutEventCallback {
  public:
    virtual ~IOutEventCallback() = default;

    /** One event. May be dropped rather than waited for. The record is not changed. */
    virtual void OnAONEvent(aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& info) = 0;
    /** A sensor's new state. Never dropped. The record is not changed. */
    virtual void OnAONSensorEvent(
            aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo& info) = 0;
};

}  // namespace zarvo::aon
