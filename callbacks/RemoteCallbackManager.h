#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONServiceCallBack.h>
#include <android/binder_ibinder.h>

#include "callbacks/ClientCalls.h"
#include "callbacks/IOutEventCallback.h"
#include "callbacks/IRemoteCallbackManagerListener.h"
#include "callbacks/RegistryStatus.h"
#include "platform/History.h"
#include "platform/Mutex.h"
#include "platform/Published.h"

namespace zarvo::aon {

/** Whether both stand for the same client: one binder, whatever objects stand before it. */
bool isCallbackEqual(
        const std::shared_ptr<aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack>& a,
        const std::shared_ptr<aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack>& b);

/**
 * The registry of clients: holds each client's callback under its handle, watches its process for
 * death, remembers the last state of each sensor, and delivers events and states.
 *
 * One per process (GetSingleton); lives until the process ends. It admits one client at a time,
 * so a handle is 1 whenever there is one.
 *
 * Threads: everything may be called from any thread. No client and no listener is called under a
 * lock of the registry's. Deliveries go out on the calling thread, from a snapshot of the clients:
 * a client that is being removed may still receive one call.
 */
class RemoteCallbackManager : public IOutEventCallback,
                              public std::enable_shared_from_this<RemoteCallbackManager> {
  public:
    using IAONServiceCallBack = aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;
    using AONCallBackInfo = aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
    using AONSensorStateInfo = aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;

    static constexpr int32_t kNullCallback = -1;
    static constexpr int32_t kOtherClientRegistered = -2;

    /** The one instance; never null. */
    static std::shared_ptr<RemoteCallbackManager> GetSingleton();

    /** For GetSingleton, and for tests that want an instance of their own. */
    RemoteCallbackManager();
    ~RemoteCallbackManager() override;
    RemoteCallbackManager(const RemoteCallbackManager&) = delete;
    RemoteCallbackManager& operator=(const RemoteCallbackManager&) = delete;

    /**
     * Sets who is told of dead clients; not owned. With null it returns only when no death notice
     * is inside the listener before, so that the listener may go away: never call it so from
     * inside the listener.
     */
    void SetListener(IRemoteCallbackManagerListener* listener);

    /**
     * Admits a client and tells it the sensors that are not idle, before it returns.
     *
     * @return 0 with the new handle, or with the old one for a callback that is registered
     *         already; kNullCallback, with the handle untouched; kOtherClientRegistered, with the
     *         handle of the client that is in the way.
     */
    int32_t RegisterClient(const std::shared_ptr<IAONServiceCallBack>& callback,
                           int64_t* clientHandle) EXCLUDES(mLock);

    /** Removes a client. @return 0, for an unknown handle too. */
    int32_t UnregisterClient(int64_t clientHandle) EXCLUDES(mLock);

    bool CheckClientHandleRegistered(int64_t clientHandle) EXCLUDES(mLock);

    /** Forgets all clients and all sensor states. The listener is not told. */
    void Clear() EXCLUDES(mLock);

    /** The death notice as binder calls it; the cookie is the dead binder. */
    static void BinderDied(void* cookie);

    /** Removes the client whose binder died, then tells the listener. */
    void OnRemoteCallbackDied(const AIBinder* binder) EXCLUDES(mLock, mListenerMutex);

    /** Delivers to the clients that answer a ping. Drops the event if the registry is in use. */
    void OnAONEvent(AONCallBackInfo& info) override EXCLUDES(mLock);

    /** Remembers the state and delivers it to the clients that answer a ping. */
    void OnAONSensorEvent(AONSensorStateInfo& info) override EXCLUDES(mLock);

    // For people who look at the service. None of these takes a lock or waits.

    /** Who is there and what the sensors do; nothing while it is being changed. */
    std::optional<RegistryStatus> Status() const { return mStatus.Get(); }
    const RegistryCounters& Counters() const { return mCounters; }
    /** The calls that a client has not returned from. */
    std::vector<ClientCalls::Call> CallsUnderWay() const { return mCalls.UnderWay(); }
    /** The sensor states that were told and forgotten. */
    std::vector<Change> LatestChanges() const { return mHistory.Latest(); }

  private:
    static constexpr char kWho[] = "RemoteCallbackManager";

    using Clients = std::map<int64_t, std::shared_ptr<IAONServiceCallBack>>;
    using SensorStates = std::map<int32_t, int32_t>;
    using Registrations = std::map<int64_t, RegistryStatus::Client>;

    int32_t UnregisterClientLock(int64_t clientHandle) REQUIRES(mLock);
    int32_t AdmitLocked(const std::shared_ptr<IAONServiceCallBack>& callback, int64_t* clientHandle)
            REQUIRES(mLock);
    /** Also publishes it. */
    void NoteRegistrationLocked(int64_t clientHandle) REQUIRES(mLock);
    Clients::iterator FindLocked(const AIBinder* binder) REQUIRES(mLock);
    std::shared_ptr<IAONServiceCallBack> CallbackOfLocked(int64_t clientHandle) REQUIRES(mLock);
    void RememberStateLocked(const AONSensorStateInfo& info) REQUIRES(mLock);
    bool TrySnapshot(Clients& clients) EXCLUDES(mLock);
    void DeliverEvent(int64_t clientHandle, const std::shared_ptr<IAONServiceCallBack>& callback,
                      const AONCallBackInfo& info);
    void DeliverState(int64_t clientHandle, const std::shared_ptr<IAONServiceCallBack>& callback,
                      const AONSensorStateInfo& info);
    void TellState(int64_t clientHandle, const std::shared_ptr<IAONServiceCallBack>& callback,
                   const AONSensorStateInfo& info);
    void PublishLocked() REQUIRES(mLock);
    binder_status_t LinkToDeath(AIBinder* binder);
    binder_status_t UnlinkToDeath(AIBinder* binder);
    void TellListener(int64_t clientHandle, const std::shared_ptr<IAONServiceCallBack>& callback)
            EXCLUDES(mLock, mListenerMutex);

    Mutex mLock{"RemoteCallbackManager::mLock", LockRank::kLeaf};
    /** Number of clients, and source of handles. */
    int64_t mClientCount GUARDED_BY(mLock) = 0;
    std::atomic<IRemoteCallbackManagerListener*> mListener{nullptr};
    Clients mClientCallbacks GUARDED_BY(mLock);
    /** Set at construction, then constant. */
    AIBinder_DeathRecipient* mDeathRecipient;
    /** The sensors that are not idle. They outlive clients. */
    SensorStates mSensorStates GUARDED_BY(mLock);
    /** The same for people: these outlive Clear(), which changes no sensor. */
    SensorStates mToldStates GUARDED_BY(mLock);
    /** Who registered each client, and when. */
    Registrations mRegistrations GUARDED_BY(mLock);

    /** Replaced under mLock, as is the history. */
    Published<RegistryStatus> mStatus;
    History mHistory;
    RegistryCounters mCounters;
    ClientCalls mCalls;

    /** Guards the number of death notices that are inside the listener; not held while they are. */
    Mutex mListenerMutex{"RemoteCallbackManager::mListenerMutex", LockRank::kLeaf};
    std::condition_variable_any mListenerLeft;
    int mCallsInListener GUARDED_BY(mListenerMutex) = 0;
};

}  // namespace zarvo::aon
