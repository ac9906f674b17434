// How events and sensor states reach the clients.

#include <chrono>

#include "callbacks/RemoteCallbackManager.h"
#include "platform/Log.h"
#include "platform/Trace.h"

namespace zarvo::aon {
namespace {

/** A client whose process has just died is passed over until its death notice removes it. */
bool Answers(const std::shared_ptr<RemoteCallbackManager::IAONServiceCallBack>& callback) {
    return callback != nullptr && AIBinder_ping(callback->asBinder().get()) == STATUS_OK;
}

/** What a change of a sensor's state is called. */
const char* StateName(int32_t state) {
    switch (state) {
        case RemoteCallbackManager::AONSensorStateInfo::SENSOR_STATE_IDLE:
            return "sensor idle";
        case RemoteCallbackManager::AONSensorStateInfo::SENSOR_STATE_STARTED:
            return "sensor started";
        default:
            return "sensor busy";
    }
}

}  // namespace

void RemoteCallbackManager::OnAONEvent(AONCallBackInfo& info) {
    Clients clients;
    if (!TrySnapshot(clients)) {
        mCounters.droppedBusy.Add();
        AON_LOGW(kWho, "OnAONEvent try_lock failed");
        return;
    }
    if (clients.empty()) mCounters.droppedNoClient.Add();
    for (const auto& [handle, callback] : clients)
        DeliverEvent(handle, callback, info);
}

void RemoteCallbackManager::DeliverEvent(int64_t clientHandle,
                                         const std::shared_ptr<IAONServiceCallBack>& callback,
                                         const AONCallBackInfo& info) {
    const TraceSection trace("aon client onAONEvent");
    const ClientCalls::Scope call(mCalls, clientHandle, "onAONEvent");
    if (!Answers(callback)) {
        mCounters.droppedNoAnswer.Add();
    } else if (!callback->onAONEvent(clientHandle, info).isOk()) {
        mCounters.droppedFailed.Add();
    } else {
        mCounters.delivered.Add();
        mCounters.lastDelivered.Set(std::chrono::steady_clock::now());
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
    for (const auto& [handle, callback] : clients)
        DeliverState(handle, callback, info);
}

void RemoteCallbackManager::DeliverState(int64_t clientHandle,
                                         const std::shared_ptr<IAONServiceCallBack>& callback,
                                         const AONSensorStateInfo& info) {
    const TraceSection trace("aon client onSensorStateChanged");
    const ClientCalls::Scope call(mCalls, clientHandle, "onSensorStateChanged");
    if (!Answers(callback)) return mCounters.statesFailed.Add();
    TellState(clientHandle, callback, info);
}

void RemoteCallbackManager::TellState(int64_t clientHandle,
                                      const std::shared_ptr<IAONServiceCallBack>& callback,
                                      const AONSensorStateInfo& info) {
    const bool taken = callback->onSensorStateChanged(clientHandle, info).isOk();
    (taken ? mCounters.statesDelivered : mCounters.statesFailed).Add();
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
        mToldStates.erase(info.sensorId);
    } else {
        mSensorStates[info.sensorId] = info.state;
        mToldStates[info.sensorId] = info.state;
    }
    mHistory.Note({.what = StateName(info.state), .sensorId = info.sensorId});
    PublishLocked();
}

void RemoteCallbackManager::PublishLocked() {
    RegistryStatus status;
    for (const auto& [handle, client] : mRegistrations) {
        if (status.clientCount < status.clients.size()) {
            status.clients[status.clientCount] = client;
        }
        ++status.clientCount;
    }
    for (const auto& [sensorId, state] : mToldStates) {
        if (status.sensorCount < status.sensors.size()) {
            status.sensors[status.sensorCount] = {sensorId, state};
        }
        ++status.sensorCount;
    }
    mStatus.Set(status);
}

}  // namespace zarvo::aon
