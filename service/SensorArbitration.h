#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include <aidl/vendor/zarvo/hardware/camera/aon/SensorConfigInfo.h>

#include "manager/SensorTypes.h"

/**
 * How the wishes of several clients become one configuration, and when a new wish can join. Pure
 * functions of values.
 *
 *     client 1: sensor 0, 320x240, 10 fps, types 1, mode 1
 *     client 2: sensor 0, 640x480,  5 fps, types 6, mode 3
 *     merged:   sensor 0, 640x480, 10 fps, types 7, mode 3
 *
 * A running stream admits a client that asks for no more than it already does:
 *
 *     client 3: sensor 0, 640x480, 10 fps, types 2, mode 1   joins
 *     client 4: sensor 0, 640x480, 15 fps, types 2, mode 1   is refused, by its rate
 */
namespace zarvo::aon {

using SensorConfigInfo = aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

/** The configuration of each client, by its handle. */
using SensorConfigMap = std::map<int64_t, SensorConfigInfo>;

/** The merge of two delivery modes that do not go together. */
inline constexpr int32_t kDeliveryModeConflict = -1;

/** Whether every bit of `part` is set in `whole`. */
constexpr bool IsSubset(int32_t part, int32_t whole) {
    return (part | whole) == whole;
}

/**
 * Equal modes stay, time-based gives way to any other, the rest is kDeliveryModeConflict. A
 * conflict stays one, whatever it is merged with.
 */
int32_t MergeDeliveryMode(int32_t a, int32_t b);

/**
 * The first sensor that is named, the highest width, height and rate, all service types, the
 * merged delivery mode (which may be kDeliveryModeConflict). The reserved fields are 0. Without
 * configurations: kNoSensor, and 0 for the rest.
 */
SensorConfigInfo MergeSensorConfigs(const SensorConfigMap& configs);

/** The merge with time-based delivery in place of kDeliveryModeConflict. */
SensorConfigInfo ForStream(SensorConfigInfo merged);

/** Why a configuration cannot join: the field, what is merged, what is wanted. */
struct ConfigConflict {
    const char* field;
    int32_t merged;
    int32_t wanted;
};

/**
 * The first field that keeps `wanted` from joining `merged`. Without `strict` only the sensor
 * counts; with it (the stream runs) nothing may exceed the merge.
 */
std::optional<ConfigConflict> FindConflict(const SensorConfigInfo& merged,
                                           const SensorConfigInfo& wanted, bool strict);

/** Whether the sensor offers exactly this size and rate, and all of the service types. */
bool Supports(const AonSensorInfo& sensor, const SensorConfigInfo& config);

/** The merge as the stream manager takes it. */
SensorConfig ToSensorConfig(const SensorConfigInfo& merged);

}  // namespace zarvo::aon
