#include "service/SensorArbitration.h"

#include <algorithm>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

namespace zarvo::aon {
namespace {

constexpr int32_t kTimeBased =
        aidl::vendor::zarvo::hardware::camera::aon::IAONService::DELIVERY_MODE_TIME_BASED;

bool HasRate(const SizeAndSupportRates& size, int32_t rate) {
    return std::find(size.rates.begin(), size.rates.end(), rate) != size.rates.end();
}

}  // namespace

int32_t MergeDeliveryMode(int32_t a, int32_t b) {
    if (a == b) return a;
    if (a == kTimeBased) return b;
    if (b == kTimeBased) return a;
    return kDeliveryModeConflict;
}

SensorConfigInfo MergeSensorConfigs(const SensorConfigMap& configs) {
    SensorConfigInfo merged;
    merged.sensorId = kNoSensor;
    if (configs.empty()) return merged;
    merged.deliveryMode = kTimeBased;
    for (const auto& [handle, config] : configs) {
        if (merged.sensorId == kNoSensor) merged.sensorId = config.sensorId;
        merged.frameWidth = std::max(merged.frameWidth, config.frameWidth);
        merged.frameHeight = std::max(merged.frameHeight, config.frameHeight);
        merged.fps = std::max(merged.fps, config.fps);
        merged.serviceType |= config.serviceType;
        merged.deliveryMode = MergeDeliveryMode(merged.deliveryMode, config.deliveryMode);
    }
    return merged;
}

SensorConfigInfo ForStream(SensorConfigInfo merged) {
    if (merged.deliveryMode == kDeliveryModeConflict) merged.deliveryMode = kTimeBased;
    return merged;
}

std::optional<ConfigConflict> FindConflict(const SensorConfigInfo& merged,
                                           const SensorConfigInfo& wanted, bool strict) {
    if (merged.sensorId == kNoSensor) return std::nullopt;
    const int32_t mode = MergeDeliveryMode(merged.deliveryMode, wanted.deliveryMode);
    const struct {
        bool fits;
        ConfigConflict conflict;
    } checks[] = {
            {merged.sensorId == wanted.sensorId, {"sensor id", merged.sensorId, wanted.sensorId}},
            {!strict || merged.fps >= wanted.fps, {"fps", merged.fps, wanted.fps}},
            {!strict || merged.frameWidth >= wanted.frameWidth,
             {"frameWidth", merged.frameWidth, wanted.frameWidth}},
            {!strict || merged.frameHeight >= wanted.frameHeight,
             {"frameHeight", merged.frameHeight, wanted.frameHeight}},
            {!strict || IsSubset(wanted.serviceType, merged.serviceType),
             {"serviceType", merged.serviceType, wanted.serviceType}},
            {!strict || mode != kDeliveryModeConflict,
             {"deliveryMode", merged.deliveryMode, wanted.deliveryMode}},
    };
    for (const auto& check : checks) {
        if (!check.fits) return check.conflict;
    }
    return std::nullopt;
}

bool Supports(const AonSensorInfo& sensor, const SensorConfigInfo& config) {
    if (sensor.sensorId != config.sensorId) return false;
    if (!IsSubset(config.serviceType, sensor.supportMode)) return false;
    return std::any_of(sensor.sizes.begin(), sensor.sizes.end(), [&](const auto& size) {
        return size.width == config.frameWidth && size.height == config.frameHeight &&
               HasRate(size, config.fps);
    });
}

SensorConfig ToSensorConfig(const SensorConfigInfo& merged) {
    return {merged.sensorId, merged.frameWidth,  merged.frameHeight,
            merged.fps,      merged.serviceType, merged.deliveryMode};
}

}  // namespace zarvo::aon
