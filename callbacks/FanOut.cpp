// How events and sensor states reach the clients.

#include "callbacks/RemoteCallbackManager.h"
#include "platform/Log.h"

namespace zarvo::aon {
namespace {

/** A client whose process has just died is passed over until its death notice removes it. */
bool Answers(const std::shared_ptr<RemoteCallbackManager::IAONServiceCallBack>& callback) {
    return callback != nullptr && AIBinder_ping(callback->asBinder().get()) == STATUS_OK;
}

}  // namespace

void RemoteCallbackManager::OnAONEvent(AONCallBackInfo& info) {
    Clients clients;
    if (!TrySnapshot(clients)) {
        AON_LOGW(kWho, "OnAONEvent try_lock failed");
        return;
    }
    for (const auto& [handle, callback] : clients) {
        if (Answers(callback)) callback->onAONEvent(handle, info);
    }
}

void RemoteCallbackManager::OnAONSensorEvent(AONSensorStateInfo& info) {
    AON_LOGI(kWho, "OnAONSensorEvent:sensorId:%d, state:%d", info.sensorId, info.state);
    Clients clients;
    {
        ScopedLock lock(mLock);
        clients = mClientCallbacks;
        RememberStateLocked(info);
    }
    for (const auto& [handle, callback] : clients) {
        if (Answers(callback)) callback->onSensorStateChanged(handle, info);
    }
}

bool RemoteCallbackManager::TrySnapshot(Clients& clients) {
    if (!mLock.try_lock()) return false;
    clients = mClientCallbacks;
    mLock.unlock();
    return true;
}

void RemoteCallbackManager::RememberStateLocked(const AONSensorStateInfo& info) {
    if (info.state == AONSensorStateInfo::SENSOR_STATE_IDLE) {
        mSensorStates.erase(info.sensorId);
    } else {
        mSensorStates[info.sensorId] = info.state;
    }
}

}  // namespace zarvo::aon
