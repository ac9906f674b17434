#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include <chrono>

#include "host/ctl/Sensors.h"
#include "host/programs/Arguments.h"

namespace zarvo::host::ctl {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;

/** The options of every command that runs a client. */
inline constexpr Option kClientOptions[] = {
        {"--sensor", "ID", "the sensor; the first one of `sensors` unless given"},
        {"--size", "WIDTHxHEIGHT", "the frames' size; the sensor's first unless given"},
        {"--rate", "NUMBER", "frames per second; the size's lowest of at least 5 unless given"},
        {"--types", "LIST",
         "of fusion, angle, gaze, feature, with commas; fusion,gaze if not given",
         "fusion angle gaze feature"},
        {"--md", "", "motion-detect mode in place of time-based delivery"},
        {"--count", "NUMBER", "leave after so many events"},
        {"--duration", "SECONDS", "leave after that time"},
};

/**
 * What a client's events and states go to. All calls come on the main thread, in the order in
 * which things arrived. False ends the client, which then fails: the sink has said why.
 */
class ClientSink {
  public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~ClientSink() = default;
    /** The client is about to subscribe with this. */
    virtual bool OnConfig(const SensorConfigInfo&) { return true; }
    virtual bool OnEvent(Time arrival, const AONCallBackInfo& info) = 0;
    virtual bool OnState(Time arrival, const AONSensorStateInfo& info) = 0;
    /** The client is gone; so many events were passed over because the sink was too slow. */
    virtual bool OnEnd(uint64_t /*eventsMissed*/) { return true; }
};

/**
 * Runs a client of the service as kClientOptions in the arguments want it, from its registration
 * until count, time, a signal or the service ends it; while a camera has the sensor it waits. Once
 * per process: it takes SIGINT, SIGTERM and SIGHUP. Gives the program's exit status.
 */
int RunClient(Arguments& arguments, ClientSink& sink);
/** Ends the client as a signal does. Thread-safe. */
void EndClient();

}  // namespace zarvo::host::ctl
