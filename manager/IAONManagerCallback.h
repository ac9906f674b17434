#pragma once

#include "platform/mtkcam/aov_event.h"

namespace zarvo::aon {

/**
 * What the stream manager reports. The calls come on binder threads, on the stream's threads and
 * on notification threads, several at a time, and never under a lock of the manager's.
 */
class IAONManagerCallback {
  public:
    virtual ~IAONManagerCallback() = default;

    /** One frame, or null; the stream owns it, and it is valid until the call returns. */
    virtual void onCallback(aov_event* event) = 0;
    /** The stream started on the sensor. */
    virtual void OnServiceStart(int sensorId) = 0;
    /** The stream stopped on the sensor, by a stop or for a camera on another sensor. */
    virtual void OnServiceStop(int sensorId) = 0;
    /** A camera device freed the sensor. */
    virtual void OnSensorIdle(int sensorId) = 0;
    /** A camera device took the sensor; a stream that ran on it is stopped. */
    virtual void OnSensorBusy(int sensorId) = 0;
};

}  // namespace zarvo::aon
