// How service types are started and stopped on the one stream.

#include <utility>

#include "platform/Log.h"
#include "service/AONService.h"
#include "service/Operation.h"

namespace zarvo::aon {

using ndk::ScopedAStatus;

int32_t AONService::ComputeStartServiceType() {
    int32_t total = 0;
    for (const auto& [handle, started] : mStartServiceTypeMap)
        total |= started;
    return total;
}

int32_t AONService::StartedByLocked(int64_t clientHandle) {
    const auto started = mStartServiceTypeMap.find(clientHandle);
    return started == mStartServiceTypeMap.end() ? 0 : started->second;
}

bool AONService::CheckStartServiceType(int64_t clientHandle, int32_t serviceType) {
    const auto config = mSensorConfigMap.find(clientHandle);
    if (config != mSensorConfigMap.end()) return IsSubset(serviceType, config->second.serviceType);
    AON_LOGE(kWho, "not subscribe this clientHandle:%lld", static_cast<long long>(clientHandle));
    return false;
}

ScopedAStatus AONService::startService(int64_t clientHandle, int32_t serviceType) {
    Operation operation(
            *this,
            {.what = "startService", .clientHandle = clientHandle, .serviceTypes = serviceType});
    if (operation.IsNested()) return RefuseNested();
    if (IsUnknownToRegistryLocked(clientHandle)) return RefuseUnknownHandle();
    return StartServiceLocked(clientHandle, serviceType);
}

ScopedAStatus AONService::StartServiceLocked(int64_t clientHandle, int32_t serviceType) {
    if (!CheckStartServiceType(clientHandle, serviceType)) {
        return Refuse(kErrorServiceType, "start service type is subset of subscribe service type");
    }
    if (mAonManager == nullptr) return Refuse(kErrorGeneral, "aon manager is null");
    const int32_t running = mAonManager->GetServiceTypeStarted();
    if (running == 0) return StartStreamLocked(clientHandle, serviceType);
    if (!IsSubset(serviceType, running)) {
        return Refuse(kErrorGeneral,
                      "sensor hub is running, please do start on other process stop");
    }
    mStartServiceTypeMap[clientHandle] = serviceType;
    AON_LOGI(kWho, "start success-> c:%d, t:%d", static_cast<int>(clientHandle), serviceType);
    return ScopedAStatus::ok();
}

ScopedAStatus AONService::StartStreamLocked(int64_t clientHandle, int32_t serviceType) {
    mStartServiceTypeMap[clientHandle] = serviceType;
    const int32_t result = mAonManager->StartService(ComputeStartServiceType());
    if (result != 0) {
        mStartServiceTypeMap.erase(clientHandle);
        AON_LOGE(kWho, "aon manager StartService failed:%d", result);
        return RefuseUnlogged(kErrorGeneral, "aon manager StartService failed");
    }
    AON_LOGI(kWho, "start success-> c:%d, t:%d", static_cast<int>(clientHandle), serviceType);
    return ScopedAStatus::ok();
}

ScopedAStatus AONService::stopService(int64_t clientHandle, int32_t serviceType) {
    Operation operation(
            *this,
            {.what = "stopService", .clientHandle = clientHandle, .serviceTypes = serviceType});
    if (operation.IsNested()) return RefuseNested();
    if (IsUnknownToRegistryLocked(clientHandle)) return RefuseUnknownHandle();
    return StopServiceLocked(clientHandle, serviceType);
}

ScopedAStatus AONService::StopServiceLocked(int64_t clientHandle, int32_t serviceType) {
    if (mAonManager == nullptr) return RefuseWithoutManager();
    if (serviceType == 0) {
        AON_LOGW(kWho, "stop service type 0 for client:%lld", static_cast<long long>(clientHandle));
        return ScopedAStatus::ok();
    }
    const int32_t left = RemoveStartedLocked(clientHandle, serviceType);
    const int32_t total = ComputeStartServiceType();
    if (total != 0 && total == mAonManager->GetServiceTypeStarted()) {
        AON_LOGI(kWho, "stop service: same do nothing");
        return ScopedAStatus::ok();
    }
    const int32_t result = mAonManager->StopService();
    if (result != 0) AON_LOGE(kWho, "aon manager StopService failed:%d", result);
    if (total != 0) {
        // The client's own rest is named; what starts is the union of all clients.
        AON_LOGI(kWho, "finalStartServiceType:%d not 0 restart", total);
        RestartLocked(clientHandle, left);
    }
    return ScopedAStatus::ok();
}

void AONService::RestartLocked(int64_t clientHandle, int32_t serviceType) {
    const char* const reason = mOperation.reason;
    if (StartServiceLocked(clientHandle, serviceType).isOk()) return;
    // What refused the restart did not refuse the operation.
    mHistory.Note({.what = "restart",
                   .reason = std::exchange(mOperation.reason, reason),
                   .clientHandle = clientHandle,
                   .pid = mOperation.pid,
                   .serviceTypes = serviceType});
}

int32_t AONService::RemoveStartedLocked(int64_t clientHandle, int32_t serviceType) {
    const auto handle = static_cast<long long>(clientHandle);
    if (mStartServiceTypeMap.count(clientHandle) == 0) {
        AON_LOGW(kWho, "client:%lld not start service", handle);
    }
    const int32_t current = StartedByLocked(clientHandle);
    if (!IsSubset(serviceType, current)) {
        AON_LOGW(kWho, "stop service type:%d more than start service type for client:%lld",
                 serviceType, handle);
    }
    const int32_t actual = current & serviceType;
    const int32_t left = current & ~serviceType;
    mStartServiceTypeMap[clientHandle] = left;
    AON_LOGI(kWho, "stop service actual type:%d, left:%d for client:%lld", actual, left, handle);
    return left;
}

}  // namespace zarvo::aon
