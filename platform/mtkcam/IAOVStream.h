#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/mtkcam/aov_event.h"
#include "platform/mtkcam/user_param.h"

/** What the stream calls, on threads of its own. The order of the operations is binary. */
class IAovStreamCallback {
  public:
    virtual ~IAovStreamCallback() = default;

    /** One frame; `event` is valid until the call returns. */
    virtual void onCallback(aov_event* event) = 0;
    /** A camera device opened. */
    virtual void NotifyOpen(int instanceId) = 0;
    /** A camera device closed. */
    virtual void NotifyClose(int instanceId) = 0;
};

/** One frame size that a sensor offers. */
struct aov_sensor_info {
    int32_t width;
    int32_t height;
    int32_t reserved0;
    /** Not interpreted; passed on to clients as it is. */
    int32_t info;
    /** Frames per second. */
    std::vector<int32_t> rates;
    uint8_t reserved1[24];
};

static_assert(offsetof(aov_sensor_info, width) == 0);
static_assert(offsetof(aov_sensor_info, height) == 4);
static_assert(offsetof(aov_sensor_info, info) == 12);
static_assert(offsetof(aov_sensor_info, rates) == 16);
static_assert(sizeof(aov_sensor_info) == 64);

/**
 * The always-on-vision stream. At most one stream runs at a time. Every operation may be called
 * from any thread, and none waits for a callback in flight. The order of the operations is
 * binary.
 */
class IAOVStream {
  public:
    /** The stream of this process, never released; null when there is none. */
    static IAOVStream* createInstance();

    virtual ~IAOVStream() = default;

    /** The sensors that can run the stream. */
    virtual std::vector<int> getSensorIdList() = 0;
    /** The frame sizes of one sensor; empty for an unknown one. */
    virtual std::vector<aov_sensor_info> getSensorInfo(int sensorId) = 0;
    /** Writes the sensor's mode bits; 0 on success. */
    virtual int getSensorMode(int sensorId, int* mode) = 0;
    /** Starts the stream; true on success. */
    virtual bool start(user_param* param) = 0;
    /** Tells the stream that a camera device took or freed these sensors; true on success. */
    virtual bool notifyCameraStatus(const std::vector<int>& sensorIds, bool opened) = 0;
    /** Stops the stream; true on success. */
    virtual bool stop() = 0;
};
