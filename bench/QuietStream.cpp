#include "bench/QuietStream.h"

#include <utility>

#include "platform/mtkcam/HalLogicalDeviceList.h"

IAOVStream* IAOVStream::createInstance() {
    return &zarvo::bench::QuietStream::Instance();
}

MtkcamModuleFactory getMtkcamModuleFactory(uint32_t /*moduleId*/) {
    return nullptr;
}

namespace zarvo::bench {

QuietStream& QuietStream::Instance() {
    static auto* const stream = new QuietStream();
    return *stream;
}

std::shared_ptr<IAovStreamCallback> QuietStream::Callback() const {
    const std::lock_guard lock(mMutex);
    return mCallback;
}

std::vector<aov_sensor_info> QuietStream::getSensorInfo(int sensorId) {
    if (sensorId != kSensorId) return {};
    aov_sensor_info size{};
    size.width = 640;
    size.height = 480;
    size.rates = {kRate};
    return {size};
}

int QuietStream::getSensorMode(int /*sensorId*/, int* mode) {
    *mode = 0x3F;
    return 0;
}

bool QuietStream::start(user_param* param) {
    const std::lock_guard lock(mMutex);
    mCallback = param->AovStreamCallback;
    return true;
}

bool QuietStream::stop() {
    // Let go of after the lock: its last holder may be this one.
    std::shared_ptr<IAovStreamCallback> released;
    const std::lock_guard lock(mMutex);
    released = std::move(mCallback);
    return true;
}

}  // namespace zarvo::bench
