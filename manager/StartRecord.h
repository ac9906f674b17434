#pragma once

#include <cstdint>

#include "manager/SensorTypes.h"
#include "platform/mtkcam/user_param.h"

/** How a configuration becomes the stream's start record. Pure functions, but for their log. */
namespace zarvo::aon {

/**
 * Writes sensor, frame size, rate and service types into `param`.
 *
 * With time-based delivery the stream runs at the configured rate. In md mode the record also
 * keeps that rate apart, and the stream runs slower for two sets of service types:
 *
 *     fps 10, service types 5 -> runs at 2
 *     fps 10, service types 1 -> runs at 3
 *     fps 10, any others      -> runs at 10
 */
void TransformSensorConfigInfoToUserParam(const SensorConfig& config, user_param& param);

/** The image format code of a bit depth (8, 10 or 12); an unknown depth counts as 8. */
int32_t ImageFormatOfBitDepth(int32_t depth);

}  // namespace zarvo::aon
