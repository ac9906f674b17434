#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

namespace zarvo::host {

/** The names of service types, joined with '+': "fusion+gaze"; "none" for 0. */
std::string ServiceTypesText(int32_t serviceTypes);

/** How many faces an event tells of; nothing when fusion is not among its results. */
std::optional<int32_t> FaceCount(
        const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& info);

/**
 * One event in a line: the frame's number and its size in pixels, then each result, with the first
 * numbers of each face. What the numbers mean, and their units, is the detector's.
 */
std::string EventText(const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& info);

/** A sensor's new state in words. */
std::string StateText(const aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo& info);

}  // namespace zarvo::host
