#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include "tests/sessions/ServerTest.h"

namespace tests {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;

// What was said when the sessions and calls were recorded.

constexpr int64_t kHandle = 0x1001;
inline const SensorConfigInfo kConfig{1, 640, 480, 10, 0, 0, 2, 3};
inline const std::vector<AONSensorInfo> kSensors{
        {7, 1, 270, 90, {{320, 240, {5, 10}}, {640, 480, {30}}}}};
inline const AONCallBackInfo kEvent{1, {{3, AONResultValue::make<AONResultValue::intValue>(42)}}};

/** Checks what it is called with; answers as the recorded service did. */
class RecordedService : public BnAONService {
  public:
    ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& in_callback,
                                 int32_t in_serviceType, int64_t* _aidl_return) override {
        callback = in_callback;
        *_aidl_return = kHandle;
        return Called("registerClient", kHandle, in_serviceType);
    }
    ScopedAStatus getAonSensorInfoList(std::vector<AONSensorInfo>* _aidl_return) override {
        *_aidl_return = kSensors;
        return Called("getAonSensorInfoList");
    }
    ScopedAStatus subscribeSensor(int64_t in_clientHandle,
                                  const SensorConfigInfo& in_config) override {
        EXPECT_EQ(in_config, kConfig);
        return Called("subscribeSensor", in_clientHandle);
    }
    ScopedAStatus startService(int64_t in_clientHandle, int32_t in_serviceType) override {
        return Called("startService", in_clientHandle, in_serviceType);
    }
    ScopedAStatus stopService(int64_t in_clientHandle, int32_t in_serviceType) override {
        return Called("stopService", in_clientHandle, in_serviceType);
    }
    ScopedAStatus unsubscribeSensor(int64_t in_clientHandle) override {
        return Called("unsubscribeSensor", in_clientHandle);
    }
    ScopedAStatus unregisterClient(int64_t in_clientHandle) override {
        return Called("unregisterClient", in_clientHandle);
    }

    std::shared_ptr<IAONServiceCallBack> callback;
    /** The methods called, in order. */
    std::vector<std::string> called;

  private:
    ScopedAStatus Called(const char* method, int64_t handle = kHandle, int32_t serviceType = 1) {
        EXPECT_EQ(handle, kHandle);
        EXPECT_EQ(serviceType, 1);
        called.emplace_back(method);
        return ScopedAStatus::ok();
    }
};

}  // namespace tests
