#include "host/stream/SimulatedSensor.h"

namespace zarvo::host {
namespace {

/** Ends the threads before the objects that their callbacks use are destroyed. */
struct CloseAtExit {
    SimulatedSensor& sensor;
    ~CloseAtExit() { sensor.Close(); }
};

// Never destroyed: whoever holds the stream may use it until the process is gone.
SimulatedSensor& TheSensor() {
    static auto* const sensor = new SimulatedSensor();
    static const CloseAtExit close{*sensor};
    return *sensor;
}

}  // namespace

[[gnu::visibility("default")]] SimulatorControl& SimulatorControl::Instance() {
    return TheSensor();
}

}  // namespace zarvo::host

[[gnu::visibility("default")]] IAOVStream* IAOVStream::createInstance() {
    static IAOVStream* const stream = zarvo::host::TheSensor().AsStream();
    return stream;
}
