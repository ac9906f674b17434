#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

namespace zarvo::bench {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

/** A client's callback that only counts. */
class CountingCallback : public aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack {
  public:
    ndk::ScopedAStatus onAONEvent(int64_t clientHandle, const AONCallBackInfo& info) override;
    ndk::ScopedAStatus onSensorStateChanged(int64_t clientHandle,
                                            const AONSensorStateInfo& info) override;

    uint64_t Events() const { return mEvents.load(std::memory_order_relaxed); }

  private:
    std::atomic<uint64_t> mEvents{0};
};

/** The operations of a client's life, in their order. */
inline constexpr std::array<const char*, 6> kOperations{"register", "subscribe",   "start",
                                                        "stop",     "unsubscribe", "unregister"};
/** Nanoseconds of each operation, summed over many lives. */
using OperationTimes = std::array<double, kOperations.size()>;

/** A client of a service in this process or another. Ends the process when it is refused. */
class Client {
  public:
    explicit Client(std::shared_ptr<IAONService> service) : mService(std::move(service)) {}

    /** Registers, subscribes and starts every service: events come from here on. */
    void Begin();
    void End();
    /** Leads so many whole lives, without events. */
    OperationTimes Live(uint64_t lives);
    uint64_t Events() const { return mCallback->Events(); }

  private:
    /** Does one operation, and says whether it went well. */
    bool Do(size_t operation);

    const std::shared_ptr<IAONService> mService;
    const std::shared_ptr<CountingCallback> mCallback =
            ndk::SharedRefBase::make<CountingCallback>();
    int64_t mHandle = 0;
};

}  // namespace zarvo::bench
