// How the sensor is yielded to the regular camera.

#include <algorithm>
#include <utility>

#include <sys/prctl.h>

#include "manager/AONManager.h"
#include "platform/Log.h"
#include "platform/mtkcam/HalLogicalDeviceList.h"

namespace zarvo::aon {
namespace {

void NameThisThread() {
    prctl(PR_SET_NAME, "AONManager");
}

HalLogicalDeviceList* FindDeviceList() {
    const MtkcamModuleFactory factory =
            getMtkcamModuleFactory(MTKCAM_MODULE_ID_HAL_LOGICAL_DEVICE_LIST);
    return factory == nullptr ? nullptr : static_cast<HalLogicalDeviceList*>(factory());
}

bool Contains(const std::vector<int32_t>& sensorIds, int32_t sensorId) {
    return std::find(sensorIds.begin(), sensorIds.end(), sensorId) != sensorIds.end();
}

}  // namespace

void AONManager::NotifyOpen(int instanceId) {
    AON_LOGI(kWho, "NotifyOpen:%d", instanceId);
    if (mAovStream == nullptr) {
        AON_LOGI(kWho, "mAovStream is null, return");
        return;
    }
    int32_t stoppedSensorId = kNoSensor;
    {
        ScopedLock lock(mMutex);
        RecordOpenDeviceLocked(instanceId);
        stoppedSensorId = SuspendStreamLocked();
        if (mCallback == nullptr) {
            AON_LOGW(kWho, "mCallback is null");
            return;
        }
    }
    LaunchNotification([this, instanceId, stoppedSensorId] {
        return ReportOpen(instanceId, stoppedSensorId);
    });
}

void AONManager::RecordOpenDeviceLocked(int32_t instanceId) {
    std::vector<int32_t> sensorIds;
    HalLogicalDeviceList* const devices = FindDeviceList();
    if (devices == nullptr) {
        AON_LOGW(kWho, "Cannot get HalLogicalDeviceList");
    } else {
        sensorIds = devices->getSensorIdsOfDevice(instanceId);
    }
    // A device that is known already keeps its old list; the stream is told the new one.
    const auto stored = mOpenDeviceMap.emplace(instanceId, sensorIds).first;
    NoteLocked({.what = "camera opened", .cameraDevice = instanceId});
    AON_LOGI(kWho, "mOpenDeviceMap add instanceId=%d %s", instanceId,
             toString(stored->second).c_str());
    if (!mAovStream->notifyCameraStatus(sensorIds, true)) {
        AON_LOGE(kWho, "Fail to notify AovStream, success=%d, %s", 0, toString(sensorIds).c_str());
    }
}

int32_t AONManager::SuspendStreamLocked() {
    const int32_t sensorId = mOpenedSensorId;
    if (sensorId == kNoSensor) return kNoSensor;
    AON_LOGW(kWho, "stop by sensor suspend");
    AON_LOGI(kWho, "AovStream paused, mOpenedSensorId=%d", sensorId);
    StopServiceLocked();
    NoteLocked({.what = "stream stopped", .reason = "for a camera", .sensorId = sensorId});
    return sensorId;
}

void AONManager::NotifyClose(int instanceId) {
    AON_LOGI(kWho, "AONManager::NotifyClose:%d", instanceId);
    if (mAovStream == nullptr) {
        AON_LOGI(kWho, "mAovStream is null, return");
        return;
    }
    LaunchNotification([this, instanceId] { return ReportClose(instanceId); });
}

void AONManager::LaunchNotification(std::function<int()> notification) {
    ScopedLock lock(mNotifyMutex);
    if (mNotifyFuture.valid()) {
        const int result = mNotifyFuture.get();
        if (result != 0) AON_LOGW(kWho, "Notify open and close failed:%d", result);
    }
    // A plain pointer to the manager is enough: its destructor waits for the last notification.
    mNotifyFuture = std::async(std::launch::async, std::move(notification));
}

std::vector<int32_t> AONManager::SensorsOfDeviceLocked(int32_t instanceId) {
    const auto entry = mOpenDeviceMap.find(instanceId);
    return entry == mOpenDeviceMap.end() ? std::vector<int32_t>{} : entry->second;
}

int AONManager::ReportOpen(int32_t instanceId, int32_t stoppedSensorId) {
    NameThisThread();
    std::vector<int32_t> sensorIds;
    std::shared_ptr<IAONManagerCallback> callback;
    {
        ScopedLock lock(mMutex);
        sensorIds = SensorsOfDeviceLocked(instanceId);
        callback = mCallback;
    }
    if (callback == nullptr) {
        AON_LOGW(kWho, "Cannot get Callback");
        return 0;
    }
    for (const int32_t sensorId : sensorIds)
        callback->OnSensorBusy(sensorId);
    // A busy notice tells the stop, too. Only a stop that the camera does not explain is told.
    if (stoppedSensorId != kNoSensor && !Contains(sensorIds, stoppedSensorId)) {
        AON_LOGI(kWho,
                 "Camera use other sensor, this sensor id:%d stop, not support more than one "
                 "sensor running",
                 stoppedSensorId);
        callback->OnServiceStop(stoppedSensorId);
    }
    return 0;
}

int AONManager::ReportClose(int32_t instanceId) {
    NameThisThread();
    std::vector<int32_t> sensorIds;
    std::shared_ptr<IAONManagerCallback> callback;
    {
        ScopedLock lock(mMutex);
        sensorIds = SensorsOfDeviceLocked(instanceId);
        if (!mAovStream->notifyCameraStatus(sensorIds, false)) {
            AON_LOGW(kWho, "Fail to notify AovStream, success=%d, %s", 0,
                     toString(sensorIds).c_str());
        }
        AON_LOGI(kWho, "mOpenDeviceMap erase instanceId=%d %s", instanceId,
                 toString(sensorIds).c_str());
        mOpenDeviceMap.erase(instanceId);
        NoteLocked({.what = "camera closed", .cameraDevice = instanceId});
        callback = mCallback;
    }
    if (callback == nullptr) {
        AON_LOGI(kWho, "No needs to notify onResume, mCallback=%p, %s.",
                 static_cast<void*>(nullptr), toString(sensorIds).c_str());
        return 0;
    }
    for (const int32_t sensorId : sensorIds)
        callback->OnSensorIdle(sensorId);
    return 0;
}

}  // namespace zarvo::aon
