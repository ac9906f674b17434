#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>

#include <cstdlib>
#include <memory>
#include <string>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/SensorConfigInfo.h>

#include "events/AONManagerCallback.h"
#include "host/stream/RecordWriter.h"

namespace zarvo::fuzz {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

/** A size so small that a whole record fits into an input. */
inline constexpr int32_t kWidth = 32, kHeight = 24;

/** A record of the scene. */
inline std::unique_ptr<aov_event> Rendered(int32_t services) {
    const host::RenderConfig config{
            .width = kWidth, .height = kHeight, .frameRate = 5, .serviceTypes = services};
    auto record = std::make_unique<aov_event>();
    host::RenderScene(config, 12, *record);
    return record;
}

/** Makes events of records, as the service does. */
class Translation {
  public:
    AONCallBackInfo EventOf(aov_event& record) {
        mTranslator->onCallback(&record);
        return mReceiver->event;
    }

  private:
    struct Receiver : aon::IOutEventCallback {
        void OnAONEvent(AONCallBackInfo& info) override { event = info; }
        void OnAONSensorEvent(AONSensorStateInfo& /*info*/) override { std::abort(); }
        AONCallBackInfo event;
    };
    const std::shared_ptr<Receiver> mReceiver = std::make_shared<Receiver>();
    const std::shared_ptr<aon::AONManagerCallback> mTranslator =
            aon::AONManagerCallback::create(mReceiver);
};

/** What a client of such records subscribes. */
inline SensorConfigInfo Config(int32_t services) {
    SensorConfigInfo config;
    config.frameWidth = kWidth;
    config.frameHeight = kHeight;
    config.fps = 5;
    config.serviceType = services;
    config.deliveryMode = 1;
    return config;
}

template <typename T>
std::string ParcelOf(const T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    if (value.writeToParcel(parcel.get()) != STATUS_OK) std::abort();
    std::string bytes(static_cast<size_t>(AParcel_getDataSize(parcel.get())), '\0');
    AParcel_marshal(parcel.get(), reinterpret_cast<uint8_t*>(bytes.data()), 0, bytes.size());
    return bytes;
}

}  // namespace zarvo::fuzz
