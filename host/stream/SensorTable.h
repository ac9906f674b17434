#pragma once

#include <vector>

#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

/** The sensors of a simulated stream that was told of no others: ids 0 to 3. */
std::vector<SensorDescription> DefaultSensors();

}  // namespace zarvo::host
