#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include <string>

namespace zarvo::host {

/** An event as a JSON object in one line: the results by name; of an image its sizes alone. */
std::string EventJson(const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& info);
/** A state notice as a JSON object in one line. */
std::string StateJson(const aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo& info);

}  // namespace zarvo::host
