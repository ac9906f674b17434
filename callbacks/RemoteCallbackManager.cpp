#include "callbacks/RemoteCallbackManager.h"

#include <string>
#include <utility>

#include "platform/Log.h"

namespace zarvo::aon {

std::shared_ptr<RemoteCallbackManager> RemoteCallbackManager::GetSingleton() {
    static const std::shared_ptr<RemoteCallbackManager> instance =
            std::make_shared<RemoteCallbackManager>();
    return instance;
}

bool isCallbackEqual(const std::shared_ptr<RemoteCallbackManager::IAONServiceCallBack>& a,
                     const std::shared_ptr<RemoteCallbackManager::IAONServiceCallBack>& b) {
    // Both are kept until they are compared: a local object's binder may live no longer than that.
    const ndk::SpAIBinder first = a->asBinder();
    const ndk::SpAIBinder second = b->asBinder();
    return first.get() == second.get();
}

RemoteCallbackManager::RemoteCallbackManager()
    : mDeathRecipient(AIBinder_DeathRecipient_new(BinderDied)) {}

RemoteCallbackManager::~RemoteCallbackManager() {
    mSensorStates.clear();
    AIBinder_DeathRecipient_delete(mDeathRecipient);
    mDeathRecipient = nullptr;
    mClientCallbacks.clear();
}

int32_t RemoteCallbackManager::RegisterClient(const std::shared_ptr<IAONServiceCallBack>& callback,
                                              int64_t* clientHandle) {
    if (callback == nullptr) {
        AON_LOGE(kWho, "RegisterClient failed: callback is null");
        return kNullCallback;
    }
    std::string hash;
    int32_t version = 0;
    {
        const ClientCalls::Scope call(mCalls, 0, "getInterfaceHash");
        callback->getInterfaceHash(&hash);
    }
    {
        const ClientCalls::Scope call(mCalls, 0, "getInterfaceVersion");
        callback->getInterfaceVersion(&version);
    }
    AON_LOGI(kWho, "RegisterClient callback-> callbackInterfaceHash:%s, callbackVersionCode:%d",
             hash.c_str(), version);

    SensorStates states;
    {
        std::shared_ptr<IAONServiceCallBack> replaced;  // dropped after the lock
        ScopedLock lock(mLock);
        const int32_t result = AdmitLocked(callback, clientHandle);
        if (result != 0) return result;
        replaced = std::exchange(mClientCallbacks[*clientHandle], callback);
        states = mSensorStates;
        NoteRegistrationLocked(*clientHandle);
    }
    AON_LOGI(kWho, "RegisterClient success -> client count:%lld",
             static_cast<long long>(*clientHandle));
    AON_LOGI(kWho, "RegisterClient success -> notify sensor state");
    for (const auto& [sensorId, state] : states) {
        AONSensorStateInfo info;
        info.sensorId = sensorId;
        info.state = state;
        const ClientCalls::Scope call(mCalls, *clientHandle, "onSensorStateChanged");
        TellState(*clientHandle, callback, info);
    }
    return 0;
}

int32_t RemoteCallbackManager::AdmitLocked(const std::shared_ptr<IAONServiceCallBack>& callback,
                                           int64_t* clientHandle) {
    const ndk::SpAIBinder binder = callback->asBinder();
    *clientHandle = 1;
    const auto registered = FindLocked(binder.get());
    if (registered != mClientCallbacks.end()) {
        *clientHandle = registered->first;
        AON_LOGW(kWho, "callback has already register, client:%d", static_cast<int>(*clientHandle));
        if (UnlinkToDeath(binder.get()) != STATUS_OK) {
            AON_LOGW(kWho, "fail to unlink IAONServiceCallBack to death");
        }
    } else if (mClientCount < 1) {
        *clientHandle = ++mClientCount;
    } else {
        AON_LOGE(kWho, "this only one client, already has other client:%lld",
                 static_cast<long long>(mClientCount));
        *clientHandle = mClientCount;
        return kOtherClientRegistered;
    }
    if (LinkToDeath(binder.get()) != STATUS_OK) {
        AON_LOGE(kWho, "Fail to link IAONServiceCallBack to death");
    }
    return 0;
}

void RemoteCallbackManager::NoteRegistrationLocked(int64_t clientHandle) {
    // A client that registers again has been there since the first time.
    const auto [client, added] = mRegistrations.try_emplace(clientHandle);
    if (added) client->second = {.handle = clientHandle, .since = Moment::Now()};
    client->second.pid = AIBinder_getCallingPid();
    client->second.uid = AIBinder_getCallingUid();
    PublishLocked();
}

int32_t RemoteCallbackManager::UnregisterClient(int64_t clientHandle) {
    std::shared_ptr<IAONServiceCallBack> removed;  // dropped after the lock
    ScopedLock lock(mLock);
    removed = CallbackOfLocked(clientHandle);
    return UnregisterClientLock(clientHandle);
}

int32_t RemoteCallbackManager::UnregisterClientLock(int64_t clientHandle) {
    const std::shared_ptr<IAONServiceCallBack> callback = CallbackOfLocked(clientHandle);
    if (callback == nullptr) {
        AON_LOGW(kWho, "clientHandle %lld not register", static_cast<long long>(clientHandle));
        return 0;
    }
    AON_LOGI(kWho, "unregister client:%lld", static_cast<long long>(clientHandle));
    const binder_status_t status = UnlinkToDeath(callback->asBinder().get());
    if (status != STATUS_OK) {
        AON_LOGE(kWho, "Failed to unlink IAONServiceCallBack to death, code:%d,", status);
    }
    --mClientCount;
    mClientCallbacks.erase(clientHandle);
    mRegistrations.erase(clientHandle);
    PublishLocked();
    return 0;
}

bool RemoteCallbackManager::CheckClientHandleRegistered(int64_t clientHandle) {
    ScopedLock lock(mLock);
    return mClientCallbacks.count(clientHandle) != 0;
}

void RemoteCallbackManager::Clear() {
    Clients removed;  // dropped after the lock
    ScopedLock lock(mLock);
    AON_LOGI(kWho, "RemoteCallbackManager clear");
    for (const auto& [handle, callback] : mClientCallbacks) {
        if (callback != nullptr) UnlinkToDeath(callback->asBinder().get());
    }
    removed.swap(mClientCallbacks);
    if (!mSensorStates.empty()) mHistory.Note({.what = "sensor states forgotten"});
    mSensorStates.clear();
    mRegistrations.clear();
    mClientCount = 0;
    PublishLocked();
}

RemoteCallbackManager::Clients::iterator RemoteCallbackManager::FindLocked(const AIBinder* binder) {
    auto entry = mClientCallbacks.begin();
    while (entry != mClientCallbacks.end() && entry->second->asBinder().get() != binder)
        ++entry;
    return entry;
}

std::shared_ptr<RemoteCallbackManager::IAONServiceCallBack> RemoteCallbackManager::CallbackOfLocked(
        int64_t clientHandle) {
    const auto entry = mClientCallbacks.find(clientHandle);
    return entry == mClientCallbacks.end() ? nullptr : entry->second;
}

binder_status_t RemoteCallbackManager::LinkToDeath(AIBinder* binder) {
    return AIBinder_linkToDeath(binder, mDeathRecipient, binder);
}

binder_status_t RemoteCallbackManager::UnlinkToDeath(AIBinder* binder) {
    return AIBinder_unlinkToDeath(binder, mDeathRecipient, binder);
}

}  // namespace zarvo::aon
