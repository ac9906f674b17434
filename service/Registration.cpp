// How clients come and go.

#include <utility>

#include "platform/Log.h"
#include "service/AONService.h"
#include "service/Operation.h"

namespace zarvo::aon {

using ndk::ScopedAStatus;

ScopedAStatus AONService::registerClient(const std::shared_ptr<IAONServiceCallBack>& callback,
                                         int32_t serviceType, int64_t* clientHandle) {
    Operation operation(*this, {.what = "registerClient", .serviceTypes = serviceType});
    if (operation.IsNested()) return RefuseNested();
    if (callback == nullptr) {
        AON_LOGE(kWho, "callback is null");
        mOperation.reason = "callback is null";
        return ScopedAStatus::fromExceptionCode(EX_ILLEGAL_ARGUMENT);
    }
    if (mAonManager == nullptr) return Refuse(kErrorGeneral, "aon manager is null");
    if (!mAonManager->CheckServiceTypeSupport(serviceType)) {
        AON_LOGE(kWho, "service type is not support:%x", static_cast<unsigned>(serviceType));
        return RefuseUnlogged(kErrorServiceType, "some type not support");
    }
    if (mRemoteCallBackManager == nullptr) {
        return Refuse(kErrorGeneral, "RemoteCallBackManager is null");
    }
    int64_t handle = 0;
    const int32_t result = AdmitLocked(callback, &handle);
    if (handle == 0 || result != 0) {
        AON_LOGE(kWho, "register callback failed：%d", result);
        return RefuseUnlogged(kErrorGeneral, "register callback failed");
    }
    mOperation.clientHandle = handle;
    mRegisterServiceTypeMap[handle] = serviceType;
    mReleased.push_back(std::exchange(mRegisterCallbackMap[handle], callback));
    *clientHandle = handle;
    AON_LOGI(kWho, "register callback success-> client:%lld, type:%d",
             static_cast<long long>(handle), serviceType);
    return ScopedAStatus::ok();
}

int32_t AONService::AdmitLocked(const std::shared_ptr<IAONServiceCallBack>& callback,
                                int64_t* clientHandle) {
    const int32_t result = mRemoteCallBackManager->RegisterClient(callback, clientHandle);
    if (result == RemoteCallbackManager::kOtherClientRegistered) {
        EvictLocked(*clientHandle);
        return mRemoteCallBackManager->RegisterClient(callback, clientHandle);
    }
    // The registry knew the handle's owner as dead before its notice has come to us.
    if (result == 0 && IsHeldByOtherLocked(*clientHandle, callback)) {
        CleanUpClientLocked(*clientHandle);
    }
    return result;
}

void AONService::EvictLocked(int64_t clientHandle) {
    mHistory.Note({.what = "client replaced", .clientHandle = clientHandle, .pid = mOperation.pid});
    AON_LOGW(kWho, "service has other callback");
    AON_LOGW(kWho, "so do stop service and remove old callback");
    const ScopedAStatus stopped = StopServiceLocked(clientHandle, ComputeStartServiceType());
    if (!stopped.isOk()) {
        AON_LOGE(kWho, "StopService failed:%d", stopped.getServiceSpecificError());
    }
    const ScopedAStatus unsubscribed = UnsubscribeSensorLocked(clientHandle);
    // Logged when it went well. Log readers know it so.
    if (unsubscribed.isOk()) {
        AON_LOGE(kWho, "UnsubscribeSensor failed:%d", unsubscribed.getServiceSpecificError());
    }
    mRemoteCallBackManager->Clear();
}

ScopedAStatus AONService::unregisterClient(int64_t clientHandle) {
    Operation operation(*this, {.what = "unregisterClient", .clientHandle = clientHandle});
    if (operation.IsNested()) return RefuseNested();
    if (StartedByLocked(clientHandle) != 0) {
        return Refuse(kErrorGeneral, "not stop all service type, unregisterClient failed");
    }
    if (mSensorConfigMap.count(clientHandle) != 0) {
        return Refuse(kErrorGeneral, "not unsubscribe all service type, unregisterClient failed");
    }
    if (mRemoteCallBackManager == nullptr) {
        ForgetRegistrationLocked(clientHandle);
        AON_LOGW(kWho, "mRemoteCallBackManager is null");
        return ScopedAStatus::ok();
    }
    if (IsUnknownToRegistryLocked(clientHandle)) return RefuseUnknownHandle();
    const int32_t result = mRemoteCallBackManager->UnregisterClient(clientHandle);
    if (result != 0) AON_LOGE(kWho, "aon manager unregisterClient failed:%d", result);
    ForgetRegistrationLocked(clientHandle);
    return ScopedAStatus::ok();
}

void AONService::OnRemoteCallbackDied(int64_t clientHandle,
                                      const std::shared_ptr<IAONServiceCallBack>& callback) {
    Operation operation(
            *this, {.what = "client died", .clientHandle = clientHandle, .pid = Change::kNobody});
    if (operation.IsNested()) {
        mPendingDeaths.push_back({clientHandle, callback});
        return;
    }
    HandleDeathLocked({clientHandle, callback});
}

void AONService::HandleDeathLocked(const DeathNotice& notice) {
    // The handle may have found its next owner before this notice came; what the dead client had
    // was cleaned up then.
    const bool late = IsHeldByOtherLocked(notice.clientHandle, notice.callback);
    AON_LOGI(kWho, "OnRemoteCallbackDied:%lld, startType:%d",
             static_cast<long long>(notice.clientHandle),
             late ? 0 : StartedByLocked(notice.clientHandle));
    if (!late) CleanUpClientLocked(notice.clientHandle);
}

bool AONService::IsHeldByOtherLocked(int64_t clientHandle,
                                     const std::shared_ptr<IAONServiceCallBack>& callback) {
    const auto owner = mRegisterCallbackMap.find(clientHandle);
    return callback != nullptr && owner != mRegisterCallbackMap.end() &&
           !isCallbackEqual(owner->second, callback);
}

void AONService::CleanUpClientLocked(int64_t clientHandle) {
    StopServiceLocked(clientHandle, StartedByLocked(clientHandle));
    UnsubscribeSensorLocked(clientHandle);
    ForgetRegistrationLocked(clientHandle);
}

void AONService::ForgetRegistrationLocked(int64_t clientHandle) {
    mRegisterServiceTypeMap.erase(clientHandle);
    const auto owner = mRegisterCallbackMap.extract(clientHandle);
    if (!owner.empty()) mReleased.push_back(owner.mapped());
}

}  // namespace zarvo::aon
