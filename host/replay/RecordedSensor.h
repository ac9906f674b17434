#pragma once

#include <vector>

#include "host/recording/Recording.h"
#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

/** Adds what is missing for this to be subscribed: the sensor, its size or the rate. A pure
 * function. */
void OfferConfig(const recording::SensorConfigInfo& config,
                 std::vector<SensorDescription>& sensors);

}  // namespace zarvo::host
