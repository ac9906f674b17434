#include "manager/AONManager.h"

#include <utility>

#include "platform/Log.h"
#include "platform/Trace.h"

namespace zarvo::aon {

std::shared_ptr<AONManager> AONManager::GetSingleton() {
    static const std::shared_ptr<AONManager> instance = std::make_shared<AONManager>();
    return instance;
}

AONManager::AONManager() : mAovStream(IAOVStream::createInstance()) {
    AON_LOGI(kWho, "aon manager create");
    ScopedLock lock(mMutex);
    PublishLocked();
}

AONManager::~AONManager() {
    AON_LOGI(kWho, "aon manager destroy");
    std::future<int> pending;
    {
        // No call is inside any more, so mNotifyMutex has nobody to keep out. The last
        // notification may still run; it needs mMutex, and is waited for without it.
        ScopedLock lock(mMutex);
        pending = std::move(mNotifyFuture);
    }
    if (!pending.valid()) return;
    const int result = pending.get();
    if (result != 0) AON_LOGW(kWho, "Notify open and close failed:%d", result);
}

int32_t AONManager::RegisterClient(const std::shared_ptr<IAONManagerCallback>& callback) {
    if (callback == nullptr) {
        AON_LOGW(kWho, "register callback is null");
        return kInvalid;
    }
    std::shared_ptr<IAONManagerCallback> replaced;  // dropped after the lock
    ScopedLock lock(mMutex);
    replaced = std::exchange(mCallback, callback);
    AON_LOGI(kWho, "register callback success");
    return 0;
}

int32_t AONManager::UnregisterClient() {
    std::shared_ptr<IAONManagerCallback> removed;  // dropped after the lock
    ScopedLock lock(mMutex);
    removed = std::move(mCallback);
    mCallback = nullptr;
    AON_LOGI(kWho, "unregister callback success");
    return 0;
}

int32_t AONManager::SubscribeSensor(const SensorConfig& config) {
    ScopedLock lock(mMutex);
    mSensorConfig = config;
    PublishLocked();
    AON_LOGI(kWho, "subscribe sensor success");
    return 0;
}

int32_t AONManager::UnsubscribeSensor() {
    ScopedLock lock(mMutex);
    mSensorConfig = SensorConfig{};
    PublishLocked();
    return 0;
}

int32_t AONManager::GetServiceTypeStarted() {
    ScopedLock lock(mMutex);
    return mServiceTypeStarted;
}

bool AONManager::CheckServiceTypeSupport(const int32_t& /*serviceType*/) {
    return true;
}

void AONManager::onCallback(aov_event* event) {
    const TraceSection trace("aon event");
    mCounters.events.Add();
    mCounters.lastEvent.Set(std::chrono::steady_clock::now());
    // Tried, not waited for: a start or stop may hold the lock, and the stream must go on.
    if (!mMutex.try_lock()) {
        mCounters.droppedBusy.Add();
        AON_LOGW(kWho, "onCallback can not get lock");
        return;
    }
    const std::shared_ptr<IAONManagerCallback> callback = mCallback;
    mMutex.unlock();
    if (callback == nullptr) {
        mCounters.droppedNoReceiver.Add();
        return;
    }
    // The receiver ignores it, and counts nothing.
    if (event == nullptr) mCounters.droppedNoRecord.Add();
    callback->onCallback(event);
}

}  // namespace zarvo::aon
