#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "manager/SensorTypes.h"
#include "platform/Counter.h"

namespace zarvo::aon {

/** What the stream manager has, in a form that can be published: trivially copyable. */
struct ManagerStatus {
    struct OpenDevice {
        static constexpr std::size_t kMostSensors = 4;

        int32_t instanceId = 0;
        /** All of them; the first ones are named. */
        uint32_t sensorCount = 0;
        std::array<int32_t, kMostSensors> sensorIds{};
    };
    static constexpr std::size_t kMostDevices = 8;

    bool hasStream = false;
    /** Whether the stream was started and has not been stopped since. */
    bool streamInited = false;
    int32_t openedSensorId = kNoSensor;
    /** Service types of the running stream; 0 when it is stopped. */
    int32_t serviceTypeStarted = 0;
    /** What the next start uses. */
    SensorConfig subscribed{};
    /** All of them; the first ones are described. */
    uint32_t deviceCount = 0;
    std::array<OpenDevice, kMostDevices> devices{};
};

/** What happened to the events that the stream gave to the manager. */
struct ManagerCounters {
    /** All. */
    Counter events;
    /** Dropped because a start, a stop or a camera was being handled. */
    Counter droppedBusy;
    /** Dropped because nobody receives. */
    Counter droppedNoReceiver;
    /** There was no record behind the pointer, so that nothing could be made of it. */
    Counter droppedNoRecord;
    LastTime lastEvent;
};

}  // namespace zarvo::aon
