// What happens when a client's process dies.

#include "callbacks/RemoteCallbackManager.h"
#include "platform/Log.h"

namespace zarvo::aon {

void RemoteCallbackManager::BinderDied(void* cookie) {
    GetSingleton()->OnRemoteCallbackDied(static_cast<const AIBinder*>(cookie));
}

void RemoteCallbackManager::OnRemoteCallbackDied(const AIBinder* binder) {
    int64_t clientHandle = 0;
    std::shared_ptr<IAONServiceCallBack> callback;
    {
        // Search and removal are one step, so that one death is told once.
        ScopedLock lock(mLock);
        const auto entry = FindLocked(binder);
        if (entry == mClientCallbacks.end()) {
            AON_LOGW(kWho, "can not find the died callback");
            return;
        }
        clientHandle = entry->first;
        callback = entry->second;
        AON_LOGW(kWho, "unregister client for remote callback died:%lld",
                 static_cast<long long>(clientHandle));
        UnregisterClientLock(clientHandle);
    }
    TellListener(clientHandle, callback);
}

void RemoteCallbackManager::SetListener(IRemoteCallbackManagerListener* listener) {
    mListener.store(listener);
    if (listener != nullptr) return;
    ScopedLock lock(mListenerMutex);
    while (mCallsInListener != 0)
        mListenerLeft.wait(mListenerMutex);
}

void RemoteCallbackManager::TellListener(int64_t clientHandle,
                                         const std::shared_ptr<IAONServiceCallBack>& callback) {
    {
        // Counted before the listener is read: SetListener(null) sees the count or we see null.
        ScopedLock lock(mListenerMutex);
        ++mCallsInListener;
    }
    // Without the mutex: a notice on a thread inside an operation of the listener's must not wait
    // for one on another thread that itself waits for that operation.
    IRemoteCallbackManagerListener* listener = mListener.load();
    if (listener != nullptr) listener->OnRemoteCallbackDied(clientHandle, callback);
    ScopedLock lock(mListenerMutex);
    --mCallsInListener;
    mListenerLeft.notify_all();
}

}  // namespace zarvo::aon
