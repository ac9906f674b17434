#pragma once

#include <android/binder_ibinder.h>

#include <memory>
#include <mutex>
#include <semaphore>
#include <string>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include "host/binder/Loopback.h"

namespace zarvo::test {

/** A callback that keeps what it was told, as text. Any thread. */
class Listener : public aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack {
  public:
    ndk::ScopedAStatus onAONEvent(
            int64_t handle,
            const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo& info) override;
    ndk::ScopedAStatus onSensorStateChanged(
            int64_t handle,
            const aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo& info) override;
    std::vector<std::string> Take();

  private:
    ndk::ScopedAStatus Keep(std::string news);

    std::mutex mMutex;
    std::vector<std::string> mNews;
};

/**
 * A client's process, as the service knows it: through a proxy of its callback. It can end with
 * the notice of its death held back. For one thread.
 */
class Process {
  public:
    using IAONServiceCallBack = aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;

    Process();
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /** A new proxy object of its one callback. */
    std::shared_ptr<IAONServiceCallBack> Callback() const;
    std::vector<std::string> TakeNews() { return mListener->Take(); }

    /** Ends it; its notices wait for TellDeath. */
    void Kill() { mConnection->Kill(); }
    /** Lets the notices go, and returns when they have been given. */
    void TellDeath();

  private:
    /** First in line for the notice of death: whoever comes after waits until it is told. */
    static void HoldNotice(void* process);

    std::counting_semaphore<> mMayBeTold{0};
    const std::shared_ptr<Listener> mListener = ndk::SharedRefBase::make<Listener>();
    const std::shared_ptr<host::Loopback> mConnection =
            host::Loopback::Connect(mListener->asBinder().get());
    const ndk::SpAIBinder mProxy = mConnection->Root();
    const ndk::ScopedAIBinder_DeathRecipient mGate{AIBinder_DeathRecipient_new(HoldNotice)};
};

}  // namespace zarvo::test
