#include "bench/Client.h"

#include <benchmark/benchmark.h>

#include <chrono>

#include "bench/Fail.h"
#include "bench/QuietStream.h"

namespace zarvo::bench {

using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int32_t kAllServices = 15;
constexpr size_t kStop = 3;

SensorConfigInfo Config() {
    SensorConfigInfo config;
    config.sensorId = QuietStream::kSensorId;
    config.frameWidth = 640;
    config.frameHeight = 480;
    config.fps = QuietStream::kRate;
    config.serviceType = kAllServices;
    config.deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
    return config;
}

}  // namespace

ndk::ScopedAStatus CountingCallback::onAONEvent(int64_t /*clientHandle*/,
                                                const AONCallBackInfo& info) {
    benchmark::DoNotOptimize(info.results.data());
    mEvents.fetch_add(1, std::memory_order_relaxed);
    return ndk::ScopedAStatus::ok();
}

ndk::ScopedAStatus CountingCallback::onSensorStateChanged(int64_t /*clientHandle*/,
                                                          const AONSensorStateInfo& /*info*/) {
    return ndk::ScopedAStatus::ok();
}

bool Client::Do(size_t operation) {
    switch (operation) {
        case 0:
            return mService->registerClient(mCallback, kAllServices, &mHandle).isOk();
        case 1:
            return mService->subscribeSensor(mHandle, Config()).isOk();
        case 2:
            return mService->startService(mHandle, kAllServices).isOk();
        case kStop:
            return mService->stopService(mHandle, kAllServices).isOk();
        case 4:
            return mService->unsubscribeSensor(mHandle).isOk();
        default:
            return mService->unregisterClient(mHandle).isOk();
    }
}

void Client::Begin() {
    for (size_t operation = 0; operation < kStop; ++operation)
        Require(Do(operation), "the service refused a client");
}

void Client::End() {
    for (size_t operation = kStop; operation < kOperations.size(); ++operation)
        Require(Do(operation), "the service refused a client's end");
}

OperationTimes Client::Live(uint64_t lives) {
    OperationTimes times{};
    for (uint64_t life = 0; life < lives; ++life) {
        Clock::time_point begin = Clock::now();
        for (size_t operation = 0; operation < kOperations.size(); ++operation) {
            Require(Do(operation), "the service refused an operation");
            const Clock::time_point end = Clock::now();
            times[operation] += std::chrono::duration<double, std::nano>(end - begin).count();
            begin = end;
        }
    }
    return times;
}

}  // namespace zarvo::bench
