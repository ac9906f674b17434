// How the stream is started and stopped.

#include <algorithm>

#include "manager/AONManager.h"
#include "manager/StartRecord.h"
#include "platform/Log.h"
#include "platform/Properties.h"
#include "platform/Trace.h"

namespace zarvo::aon {

int32_t AONManager::StartService(int32_t serviceType) {
    std::shared_ptr<IAONManagerCallback> callback;
    int32_t sensorId = kNoSensor;
    {
        ScopedLock lock(mMutex);
        if (mOpenedSensorId != kNoSensor) {
            AON_LOGW(kWho,
                     "AovStream is running with sensorId %d, please stop() the previous stream "
                     "before start() a new one.",
                     mOpenedSensorId);
            const int32_t stopped = mOpenedSensorId;
            StopServiceLocked();
            NoteLocked(
                    {.what = "stream stopped", .reason = "for another start", .sensorId = stopped});
        }
        sensorId = mSensorConfig.sensorId;
        if (IsHeldByCameraLocked(sensorId)) {
            NoteLocked({.what = "start refused",
                        .reason = "a camera has the sensor",
                        .sensorId = sensorId,
                        .serviceTypes = serviceType});
            return kNoDevice;
        }
        const int32_t result = StartStreamLocked(serviceType);
        if (result != 0) return result;
        callback = mCallback;
    }
    if (callback != nullptr) callback->OnServiceStart(sensorId);
    return 0;
}

bool AONManager::IsHeldByCameraLocked(int32_t sensorId) {
    for (const auto& [instanceId, sensorIds] : mOpenDeviceMap) {
        if (std::find(sensorIds.begin(), sensorIds.end(), sensorId) == sensorIds.end()) continue;
        if (instanceId == -1) return false;  // no device at all
        AON_LOGI(kWho, "sensor %d is in used, CameraDevice %d with %s is opened.", sensorId,
                 instanceId, toString(sensorIds).c_str());
        return true;
    }
    return false;
}

int32_t AONManager::StartStreamLocked(int32_t serviceType) {
    mServiceTypeStarted = serviceType;
    mSensorConfig.serviceType = serviceType;
    mOpenedSensorId = mSensorConfig.sensorId;
    FillUserParamLocked();
    const int32_t result = InitAovStreamLocked();
    if (result == 0) {
        AON_LOGI(kWho, "start sensor success:%d", serviceType);
        NoteLocked({.what = "stream started",
                    .sensorId = mOpenedSensorId,
                    .serviceTypes = serviceType});
        return 0;
    }
    AON_LOGE(kWho, "Failed to initialize AovStream.");
    mOpenedSensorId = kNoSensor;
    mUserParam = user_param{};
    mServiceTypeStarted = 0;
    NoteLocked({.what = "start refused",
                .reason = "the stream refused",
                .sensorId = mSensorConfig.sensorId,
                .serviceTypes = serviceType});
    return result;
}

void AONManager::FillUserParamLocked() {
    TransformSensorConfigInfoToUserParam(mSensorConfig, mUserParam);
    mUserParam.debugMode = properties::AovDebugMode() >= 1 ? 1 : 0;
    mUserParam.AovStreamCallback = shared_from_this();
    AON_LOGI(kWho, "debug_mode=%u, AovStreamCallback=%p",
             static_cast<unsigned>(mUserParam.debugMode), static_cast<void*>(this));
    mUserParam.mainFormat = ImageFormatOfBitDepth(properties::AovBitDepthMain());
    mUserParam.subFormat = ImageFormatOfBitDepth(properties::AovBitDepthSub());
    AON_LOGI(kWho, "start sensor->id:%d, t:%d, w:%d, h:%d, f:%d", mUserParam.sensorId,
             mUserParam.serviceType, mUserParam.frameWidth, mUserParam.frameHeight,
             mUserParam.frameRate);
}

int32_t AONManager::InitAovStreamLocked() {
    if (mAovStreamInited) {
        AON_LOGW(kWho, "AovStream is initialized");
        return 0;
    }
    if (mAovStream == nullptr) {
        AON_LOGE(kWho, "Cannot get AovStream");
        return kInvalid;
    }
    const TraceSection trace("aon stream start");
    if (!mAovStream->start(&mUserParam)) {
        AON_LOGE(kWho, "Failed to initialize AovStream.");
        return kInvalid;
    }
    mAovStreamInited = true;
    return 0;
}

int32_t AONManager::UninitAovStreamLocked() {
    if (!mAovStreamInited) {
        AON_LOGW(kWho, "AovStream is uninitialized");
        return 0;
    }
    if (mAovStream == nullptr) {
        AON_LOGE(kWho, "Cannot get AovStream");
        return 0;
    }
    const TraceSection trace("aon stream stop");
    if (mAovStream->stop()) {
        mAovStreamInited = false;
    } else {
        AON_LOGE(kWho, "Failed to uninitialize AovStream.");
    }
    return 0;
}

int32_t AONManager::StopServiceLocked() {
    if (mOpenedSensorId == kNoSensor) {
        AON_LOGW(kWho, "AovStream is not started.");
        return 0;
    }
    if (UninitAovStreamLocked() != 0) AON_LOGW(kWho, "Failed to uninitialize AovStream.");
    mServiceTypeStarted = 0;
    mOpenedSensorId = kNoSensor;
    mUserParam = user_param{};
    AON_LOGI(kWho, "stop sensor success");
    return 0;
}

int32_t AONManager::StopService() {
    std::shared_ptr<IAONManagerCallback> callback;
    int32_t sensorId = kNoSensor;
    int32_t result = 0;
    {
        ScopedLock lock(mMutex);
        sensorId = mOpenedSensorId;
        result = StopServiceLocked();
        if (sensorId != kNoSensor) NoteLocked({.what = "stream stopped", .sensorId = sensorId});
        callback = mCallback;
    }
    if (callback != nullptr && sensorId != kNoSensor) callback->OnServiceStop(sensorId);
    return result;
}

}  // namespace zarvo::aon
