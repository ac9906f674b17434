#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/ctl/Service.h"
#include "host/programs/Arguments.h"

namespace zarvo::host::ctl {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

/** The service types of a list such as "fusion,gaze"; nothing if one is unknown. */
std::optional<int32_t> ParseTypes(std::string_view list);

/** What the arguments ask for, completed from what the sensors offer; errors are set in them.
 * A pure function. */
SensorConfigInfo ChooseConfig(Arguments& arguments, const std::vector<AONSensorInfo>& sensors);

}  // namespace zarvo::host::ctl
