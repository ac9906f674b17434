// How configurations are checked, merged and handed to the stream manager.

#include <algorithm>

#include "platform/Log.h"
#include "service/AONService.h"
#include "service/Operation.h"

namespace zarvo::aon {

using ndk::ScopedAStatus;

namespace {

void LogSubscribed(const char* who, int64_t clientHandle, const SensorConfigInfo& config) {
    AON_LOGI(who, "subscribe success-> c:%d, id:%d, t:%d, w:%d, h:%d, f:%d",
             static_cast<int>(clientHandle), config.sensorId, config.serviceType, config.frameWidth,
             config.frameHeight, config.fps);
}

}  // namespace

SensorConfigInfo AONService::ComputeSensorConfigLocked() {
    const SensorConfigInfo merged = MergeSensorConfigs(mSensorConfigMap);
    if (merged.deliveryMode == kDeliveryModeConflict) {
        AON_LOGW(kWho,
                 "computed deliveryMode is -1, some config not right, force set to TIME_BASED");
    }
    return ForStream(merged);
}

bool AONService::CheckSubscribeServiceType(int64_t clientHandle, int32_t serviceType) {
    const auto registered = mRegisterServiceTypeMap.find(clientHandle);
    if (registered != mRegisterServiceTypeMap.end()) {
        return IsSubset(serviceType, registered->second);
    }
    AON_LOGE(kWho, "not register this clientHandle:%lld", static_cast<long long>(clientHandle));
    return false;
}

bool AONService::CheckConfigSupportLocked(int64_t /*clientHandle*/,
                                          const SensorConfigInfo& config) {
    if (mAonManager == nullptr) {
        AON_LOGE(kWho, "aon manager is null");
        return false;
    }
    std::vector<AonSensorInfo> sensors;
    mAonManager->GetAonSensorInfoList(sensors);
    return std::any_of(sensors.begin(), sensors.end(),
                       [&](const AonSensorInfo& sensor) { return Supports(sensor, config); });
}

bool AONService::CheckCanAddSensorConfigLocked(int64_t /*clientHandle*/,
                                               const SensorConfigInfo& config, bool strict) {
    const auto conflict = FindConflict(ComputeSensorConfigLocked(), config, strict);
    if (!conflict.has_value()) return true;
    AON_LOGE(kWho, "exist use %s:%d, new config:%d, not support", conflict->field, conflict->merged,
             conflict->wanted);
    return false;
}

ScopedAStatus AONService::subscribeSensor(int64_t clientHandle, const SensorConfigInfo& config) {
    Operation operation(*this, {.what = "subscribeSensor",
                                .clientHandle = clientHandle,
                                .sensorId = config.sensorId,
                                .serviceTypes = config.serviceType});
    if (operation.IsNested()) return RefuseNested();
    if (IsUnknownToRegistryLocked(clientHandle)) {
        return RefuseLoggingOtherwise(kErrorGeneral, "clientHandle not register",
                                      "in_clientHandle not register");
    }
    if (!CheckSubscribeServiceType(clientHandle, config.serviceType)) {
        return RefuseLoggingOtherwise(kErrorServiceType, "service type need subset of register",
                                      "subscribe service type is subset of register service type");
    }
    if (mAonManager == nullptr) return Refuse(kErrorGeneral, "aon manager is null");
    if (!CheckConfigSupportLocked(clientHandle, config)) {
        return Refuse(kErrorGeneral, "config not support");
    }
    return mAonManager->GetServiceTypeStarted() != 0 ? JoinRunningLocked(clientHandle, config)
                                                     : SubscribeMergedLocked(clientHandle, config);
}

ScopedAStatus AONService::JoinRunningLocked(int64_t clientHandle, const SensorConfigInfo& config) {
    if (!CheckCanAddSensorConfigLocked(clientHandle, config, true)) {
        return RefuseLoggingOtherwise(kErrorGeneral, "can support this config when sensor running",
                                      "can not support this config when sensor running");
    }
    mSensorConfigMap[clientHandle] = config;
    LogSubscribed(kWho, clientHandle, config);
    return ScopedAStatus::ok();
}

ScopedAStatus AONService::SubscribeMergedLocked(int64_t clientHandle,
                                                const SensorConfigInfo& config) {
    if (!CheckCanAddSensorConfigLocked(clientHandle, config, false)) {
        return RefuseLoggingOtherwise(kErrorGeneral,
                                      "can support this config when other process use",
                                      "can not support this config when other process use");
    }
    mSensorConfigMap[clientHandle] = config;
    const SensorConfigInfo merged = ComputeSensorConfigLocked();
    const int32_t result = mAonManager->SubscribeSensor(ToSensorConfig(merged));
    if (result != 0) {
        mSensorConfigMap.erase(clientHandle);
        AON_LOGE(kWho, "aon manager SubscribeSensor failed:%d", result);
        return RefuseUnlogged(kErrorGeneral, "aon manager SubscribeSensor failed");
    }
    LogSubscribed(kWho, clientHandle, merged);
    return ScopedAStatus::ok();
}

ScopedAStatus AONService::unsubscribeSensor(int64_t clientHandle) {
    Operation operation(*this, {.what = "unsubscribeSensor", .clientHandle = clientHandle});
    if (operation.IsNested()) return RefuseNested();
    if (IsUnknownToRegistryLocked(clientHandle)) return RefuseUnknownHandle();
    return UnsubscribeSensorLocked(clientHandle);
}

ScopedAStatus AONService::UnsubscribeSensorLocked(int64_t clientHandle) {
    if (mAonManager == nullptr) return Refuse(kErrorGeneral, "aon manager is null");
    const int32_t started = StartedByLocked(clientHandle);
    if (started != 0) {
        AON_LOGW(kWho, "unsubscribe after stop all service type");
        StopServiceLocked(clientHandle, started);
    }
    mSensorConfigMap.erase(clientHandle);
    const SensorConfigInfo merged = ComputeSensorConfigLocked();
    if (merged.sensorId != kNoSensor) {
        AON_LOGI(kWho, "other process use sensor id:%d type:%d use, not actual unsubscribe sensor",
                 merged.sensorId, merged.serviceType);
        return ScopedAStatus::ok();
    }
    const int32_t result = mAonManager->UnsubscribeSensor();
    if (result != 0) AON_LOGE(kWho, "aon manager UnsubscribeSensor failed:%d", result);
    return ScopedAStatus::ok();
}

}  // namespace zarvo::aon
