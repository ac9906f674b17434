#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/SensorConfigInfo.h>

#include <chrono>
#include <cstdint>
#include <variant>

namespace zarvo::host::recording {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

/** The end of a recording. */
struct EndNote {
    /** Events that came, and that the recorder was too slow for. */
    uint64_t eventsMissed = 0;
};

/** Something that happened to the client that was recorded. */
struct Entry {
    uint64_t offset = 0;               // in the file, in bytes
    std::chrono::nanoseconds time{0};  // since the recording's beginning
    std::variant<SensorConfigInfo, AONCallBackInfo, AONSensorStateInfo, EndNote> what;
};

}  // namespace zarvo::host::recording
