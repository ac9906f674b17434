#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>

#include "callbacks/RemoteCallbackManager.h"
#include "events/AONManagerCallback.h"
#include "manager/AONManager.h"
#include "platform/History.h"
#include "platform/Mutex.h"
#include "platform/Published.h"
#include "service/SensorArbitration.h"
#include "service/ServiceStatus.h"

namespace zarvo::aon {

/**
 * The always-on camera service: checks what clients ask for, keeps what each of them has, and
 * drives the stream with what all of them want together.
 *
 * The host process makes one with ndk::SharedRefBase::make and publishes its binder. On its way
 * out it lets go of the registry and of the stream manager; a stream that runs then goes on
 * without a receiver, so clients should be gone before.
 *
 * Operations and death notices may come on any thread; mLock is held for the whole of each. What
 * an operation brings about (state notices, the questions at registration) reaches the client
 * before the operation returns, on its thread and with mLock held. An operation that the client
 * calls on that thread meanwhile is refused with EX_ILLEGAL_STATE; a death notice that comes on
 * that thread is handled when the operation lets go.
 */
class __attribute__((visibility("default"))) AONService
    : public aidl::vendor::zarvo::hardware::camera::aon::BnAONService,
      public IRemoteCallbackManagerListener {
  public:
    using AONSensorInfo = aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
    using IAONServiceCallBack = aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;

    /** Joins itself to the process's registry and stream manager. */
    AONService();
    ~AONService() override;

    // The operations; their contract stands in IAONService.aidl.
    ndk::ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& callback,
                                      int32_t serviceType, int64_t* clientHandle) override;
    ndk::ScopedAStatus getAonSensorInfoList(std::vector<AONSensorInfo>* sensors) override;
    ndk::ScopedAStatus subscribeSensor(int64_t clientHandle,
                                       const SensorConfigInfo& config) override;
    ndk::ScopedAStatus startService(int64_t clientHandle, int32_t serviceType) override;
    ndk::ScopedAStatus stopService(int64_t clientHandle, int32_t serviceType) override;
    ndk::ScopedAStatus unsubscribeSensor(int64_t clientHandle) override;
    ndk::ScopedAStatus unregisterClient(int64_t clientHandle) override;

    /** Stops and unsubscribes what the dead client had. */
    void OnRemoteCallbackDied(int64_t clientHandle,
                              const std::shared_ptr<IAONServiceCallBack>& callback) override;

    /**
     * Tells people what the service has and does; `--help` says how. It waits for no lock, so that
     * it answers whatever a client or the stream does, and at most a second for who reads `fd`.
     *
     * @return STATUS_BAD_VALUE, and the help in `fd`, for arguments that it does not know; another
     *         error if not everything could be written.
     */
    binder_status_t dump(int fd, const char** args, uint32_t numArgs) override;

  protected:
    /** Takes its collaborators from outside; any of them may be null. For tests. */
    AONService(std::shared_ptr<RemoteCallbackManager> registry, std::shared_ptr<AONManager> manager,
               std::shared_ptr<AONManagerCallback> translator);

  private:
    class Operation;
    struct DeathNotice {
        int64_t clientHandle;
        std::shared_ptr<IAONServiceCallBack> callback;
    };

    static constexpr char kWho[] = "AONService";

    /** Code 1: anything that fails, but for what code 2 says. */
    static constexpr int32_t kErrorGeneral = 1;
    /** Code 2: service types outside what the client may use. */
    static constexpr int32_t kErrorServiceType = 2;

    bool ConnectRegistry();
    void ConnectManager();

    // Every refusal. The texts live for ever.
    ndk::ScopedAStatus Refuse(int32_t code, const char* message) REQUIRES(mLock);
    ndk::ScopedAStatus RefuseLoggingOtherwise(int32_t code, const char* message,
                                              const char* logText) REQUIRES(mLock);
    ndk::ScopedAStatus RefuseUnlogged(int32_t code, const char* message) REQUIRES(mLock);
    ndk::ScopedAStatus RefuseUnknownHandle() REQUIRES(mLock);
    ndk::ScopedAStatus RefuseWithoutManager() REQUIRES(mLock);
    static ndk::ScopedAStatus RefuseNested();

    // Clients.
    /** False without a registry: nobody can say then, and the checks that follow answer. */
    bool IsUnknownToRegistryLocked(int64_t clientHandle) REQUIRES(mLock);
    int32_t AdmitLocked(const std::shared_ptr<IAONServiceCallBack>& callback, int64_t* clientHandle)
            REQUIRES(mLock);
    void EvictLocked(int64_t clientHandle) REQUIRES(mLock);
    bool IsHeldByOtherLocked(int64_t clientHandle,
                             const std::shared_ptr<IAONServiceCallBack>& callback) REQUIRES(mLock);
    void ForgetRegistrationLocked(int64_t clientHandle) REQUIRES(mLock);
    void CleanUpClientLocked(int64_t clientHandle) REQUIRES(mLock);
    void HandleDeathLocked(const DeathNotice& notice) REQUIRES(mLock);

    // Subscriptions.
    SensorConfigInfo ComputeSensorConfigLocked() REQUIRES(mLock);
    bool CheckSubscribeServiceType(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);
    bool CheckConfigSupportLocked(int64_t clientHandle, const SensorConfigInfo& config)
            REQUIRES(mLock);
    bool CheckCanAddSensorConfigLocked(int64_t clientHandle, const SensorConfigInfo& config,
                                       bool strict) REQUIRES(mLock);
    ndk::ScopedAStatus JoinRunningLocked(int64_t clientHandle, const SensorConfigInfo& config)
            REQUIRES(mLock);
    ndk::ScopedAStatus SubscribeMergedLocked(int64_t clientHandle, const SensorConfigInfo& config)
            REQUIRES(mLock);
    ndk::ScopedAStatus UnsubscribeSensorLocked(int64_t clientHandle) REQUIRES(mLock);

    // Started service types.
    int32_t ComputeStartServiceType() REQUIRES(mLock);
    int32_t StartedByLocked(int64_t clientHandle) REQUIRES(mLock);
    bool CheckStartServiceType(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);
    ndk::ScopedAStatus StartServiceLocked(int64_t clientHandle, int32_t serviceType)
            REQUIRES(mLock);
    ndk::ScopedAStatus StartStreamLocked(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);
    ndk::ScopedAStatus StopServiceLocked(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);
    void RestartLocked(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);
    int32_t RemoveStartedLocked(int64_t clientHandle, int32_t serviceType) REQUIRES(mLock);

    // What people see.
    ServiceStatus CollectStatus() EXCLUDES(mLock);
    std::vector<ClientStatus> CollectClientsLocked() REQUIRES(mLock);

    // Set at construction, released at destruction, constant between; null when missing.
    std::shared_ptr<AONManager> mAonManager;
    std::shared_ptr<RemoteCallbackManager> mRemoteCallBackManager;
    std::shared_ptr<AONManagerCallback> mAonManagerCallback;

    Mutex mLock{"AONService::mLock", LockRank::kService};
    /** The service types each client registered. */
    std::map<int64_t, int32_t> mRegisterServiceTypeMap GUARDED_BY(mLock);
    SensorConfigMap mSensorConfigMap GUARDED_BY(mLock);
    /** The service types each client has started; a client that stopped them all keeps a 0. */
    std::map<int64_t, int32_t> mStartServiceTypeMap GUARDED_BY(mLock);

    /** The callback each client registered, to tell a handle's new owner from a dead one. */
    std::map<int64_t, std::shared_ptr<IAONServiceCallBack>> mRegisterCallbackMap GUARDED_BY(mLock);
    /** Deaths that were told on the thread of the running operation. */
    std::vector<DeathNotice> mPendingDeaths GUARDED_BY(mLock);
    /** Callbacks to be let go of after mLock. */
    std::vector<std::shared_ptr<IAONServiceCallBack>> mReleased GUARDED_BY(mLock);
    /** The thread that holds mLock. */
    std::atomic<std::thread::id> mLockOwner{};

    const Moment mCreated = Moment::Now();
    /** The operation that holds mLock, as it will be remembered. */
    Change mOperation GUARDED_BY(mLock);
    /** The same for whoever asks meanwhile. Replaced under mLock, as is the history. */
    Published<RunningOperation> mRunning;
    History mHistory;
};

}  // namespace zarvo::aon
