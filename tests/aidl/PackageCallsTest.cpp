#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BpAONService.h>
#include <android/binder_stability.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/binder/Loopback.h"
#include "tests/aidl/ParcelBytes.h"

namespace zarvo::host::aidl {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;
using ndk::ScopedAStatus;

constexpr const char* kName = "vendor.zarvo.hardware.camera.aon.IAONService";

/** Answers with what it was called with, as far as that can be. */
class EchoService : public BnAONService {
  public:
    ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& in_callback,
                                 int32_t in_serviceType, int64_t* _aidl_return) override {
        callback = in_callback;
        ++registered;
        *_aidl_return = in_serviceType * 1000;
        return ScopedAStatus::ok();
    }
    ScopedAStatus getAonSensorInfoList(std::vector<AONSensorInfo>* _aidl_return) override {
        *_aidl_return = sensors;
        return ScopedAStatus::ok();
    }
    ScopedAStatus subscribeSensor(int64_t, const SensorConfigInfo& in_config) override {
        config = in_config;
        return ScopedAStatus::fromServiceSpecificErrorWithMessage(2, "full");
    }
    ScopedAStatus startService(int64_t handle, int32_t) override {
        return callback->onAONEvent(handle, {1, {{3, AONResultValue(42)}}});
    }
    ScopedAStatus stopService(int64_t, int32_t) override { return ScopedAStatus::ok(); }
    ScopedAStatus unsubscribeSensor(int64_t) override {
        return ScopedAStatus::fromStatus(STATUS_BAD_INDEX);
    }
    ScopedAStatus unregisterClient(int64_t) override { return ScopedAStatus::ok(); }

    std::shared_ptr<IAONServiceCallBack> callback;
    int registered = 0;
    std::vector<AONSensorInfo> sensors = {{7, 1, 2, 3, {{640, 480, {30}}}}};
    SensorConfigInfo config;
};

class Callback : public BnAONServiceCallBack {
  public:
    ScopedAStatus onAONEvent(int64_t in_clientHandle, const AONCallBackInfo& in_info) override {
        handle = in_clientHandle;
        info = in_info;
        return ScopedAStatus::ok();
    }
    ScopedAStatus onSensorStateChanged(int64_t, const AONSensorStateInfo&) override {
        return ScopedAStatus::ok();
    }

    int64_t handle = 0;
    AONCallBackInfo info;
};

class PackageCalls : public testing::Test {
  protected:
    void SetUp() override {
        loopback = Loopback::Connect(service->asBinder().get());
        ASSERT_NE(loopback, nullptr);
        proxy = IAONService::fromBinder(loopback->Root());
        ASSERT_NE(proxy, nullptr);
    }

    const std::shared_ptr<EchoService> service = ndk::SharedRefBase::make<EchoService>();
    std::shared_ptr<Loopback> loopback;
    std::shared_ptr<IAONService> proxy;
};

TEST(PackageStatics, AreThoseOfTheFrozenVersion) {
    EXPECT_STREQ(IAONService::descriptor, kName);
    EXPECT_EQ(+IAONService::version, 1);
    EXPECT_EQ(IAONService::hash.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(IAONService::hash.size(), 40u);
    EXPECT_EQ(IAONService::hash, IAONServiceCallBack::hash);
    const uint32_t codes[] = {
            IAONService::TRANSACTION_registerClient,
            IAONService::TRANSACTION_getAonSensorInfoList,
            IAONService::TRANSACTION_subscribeSensor,
            IAONService::TRANSACTION_startService,
            IAONService::TRANSACTION_stopService,
            IAONService::TRANSACTION_unsubscribeSensor,
            IAONService::TRANSACTION_unregisterClient,
    };
    for (uint32_t i = 0; i < std::size(codes); ++i)
        EXPECT_EQ(codes[i], i + 1);
    EXPECT_EQ(IAONService::SERVICE_TYPE_FACE_FEATURE, 8);
    EXPECT_EQ(EchoService::makeServiceName("default"), std::string(kName) + "/default");
}

TEST_F(PackageCalls, PassArgumentsAndResults) {
    ASSERT_TRUE(proxy->isRemote());
    int64_t handle = 0;
    const auto callback = ndk::SharedRefBase::make<Callback>();
    EXPECT_TRUE(proxy->registerClient(callback, 5, &handle).isOk());
    EXPECT_EQ(handle, 5000);
    EXPECT_TRUE(service->callback->isRemote());

    std::vector<AONSensorInfo> sensors(3);
    EXPECT_TRUE(proxy->getAonSensorInfoList(&sensors).isOk());
    EXPECT_EQ(sensors, service->sensors);

    EXPECT_TRUE(proxy->startService(77, 1).isOk());
    EXPECT_EQ(callback->handle, 77);
    EXPECT_EQ(callback->info.toString(),
              "AONCallBackInfo{serviceType: 1, results: [AONResult{key: 3, value: "
              "AONResultValue{intValue: 42}}]}");
}

TEST_F(PackageCalls, PassEveryKindOfError) {
    const SensorConfigInfo config{1, 640, 480, 10, 0, 0, 2, 3};
    const ScopedAStatus refused = proxy->subscribeSensor(1, config);
    EXPECT_EQ(refused.getServiceSpecificError(), 2);
    EXPECT_STREQ(refused.getMessage(), "full");
    EXPECT_EQ(service->config, config);
    EXPECT_EQ(proxy->unsubscribeSensor(1).getStatus(), STATUS_BAD_INDEX);
    loopback->Kill();
    std::vector<AONSensorInfo> untouched(3);
    EXPECT_EQ(proxy->getAonSensorInfoList(&untouched).getStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(untouched.size(), 3u);
}

TEST_F(PackageCalls, VersionAndHashAreAskedForOnce) {
    int32_t version = 0;
    std::string hash;
    EXPECT_TRUE(proxy->getInterfaceVersion(&version).isOk());
    EXPECT_TRUE(proxy->getInterfaceHash(&hash).isOk());
    EXPECT_EQ(version, 1);
    EXPECT_EQ(hash, IAONService::hash);
    loopback->Kill();
    EXPECT_TRUE(proxy->getInterfaceVersion(&version).isOk());
    EXPECT_TRUE(proxy->getInterfaceHash(&hash).isOk());
}

TEST_F(PackageCalls, ANullCallbackArrivesAsNull) {
    int64_t handle = 0;
    EXPECT_TRUE(proxy->registerClient(nullptr, 1, &handle).isOk());
    EXPECT_EQ(service->registered, 1);
    EXPECT_EQ(service->callback, nullptr);
}

/** Sends a request whose arguments `write` puts into the parcel, and gives the status. */
template <typename Write>
binder_status_t Send(const ndk::SpAIBinder& binder, transaction_code_t code, const Write& write) {
    ndk::ScopedAParcel in;
    ndk::ScopedAParcel out;
    EXPECT_EQ(AIBinder_prepareTransaction(binder.get(), in.getR()), STATUS_OK);
    write(in.get());
    return AIBinder_transact(binder.get(), code, in.getR(), out.getR(), 0);
}

TEST_F(PackageCalls, ABinderOfAnotherInterfaceArrivesAsNull) {
    service->callback = ndk::SharedRefBase::make<Callback>();
    const ndk::SpAIBinder other = ndk::SharedRefBase::make<EchoService>()->asBinder();
    const auto write = [&](AParcel* parcel) {
        AParcel_writeStrongBinder(parcel, other.get());
        AParcel_writeInt32(parcel, 1);
    };
    EXPECT_EQ(Send(loopback->Root(), IAONService::TRANSACTION_registerClient, write), STATUS_OK);
    EXPECT_EQ(service->registered, 1);
    EXPECT_EQ(service->callback, nullptr);
    EXPECT_EQ(IAONServiceCallBack::fromBinder(loopback->Root()), nullptr);
}

TEST_F(PackageCalls, MalformedRequestsDoNotReachTheService) {
    const auto nothing = [](AParcel*) {};
    EXPECT_EQ(Send(loopback->Root(), IAONService::TRANSACTION_registerClient, nothing),
              STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(Send(loopback->Root(), 50, nothing), STATUS_UNKNOWN_TRANSACTION);
    EXPECT_EQ(service->registered, 0);
    const auto more = [](AParcel* parcel) {
        for (int i = 0; i < 9; ++i)
            AParcel_writeInt64(parcel, 1);
    };
    EXPECT_EQ(Send(loopback->Root(), IAONService::TRANSACTION_stopService, more), STATUS_OK);
}

TEST_F(PackageCalls, WithinTheProcessGoToTheObjectItself) {
    EXPECT_EQ(IAONService::fromBinder(service->asBinder()), service);
    EXPECT_EQ(IAONService::fromBinder(ndk::SpAIBinder()), nullptr);
    EXPECT_NE(IAONService::fromBinder(loopback->Root()), proxy) << "a proxy was kept";
    EXPECT_EQ(IAONService::fromBinder(loopback->Root())->asBinder(), proxy->asBinder());
}

TEST_F(PackageCalls, ADelegatorForwardsToWhatItStandsFor) {
    const auto delegator = ndk::SharedRefBase::make<IAONServiceDelegator>(proxy);
    int64_t handle = 0;
    EXPECT_TRUE(delegator->registerClient(nullptr, 3, &handle).isOk());
    EXPECT_EQ(handle, 3000);
    EXPECT_FALSE(delegator->isRemote());
}

TEST(PackageDefault, AnswersWhatTheServerDoesNotKnow) {
    // A server of the interface's name that knows no method at all.
    static AIBinder_Class* const clazz = AIBinder_Class_define(
            kName, [](void*) -> void* { return nullptr; }, [](void*) {},
            [](AIBinder*, transaction_code_t, const AParcel*, AParcel*) -> binder_status_t {
                return STATUS_UNKNOWN_TRANSACTION;
            });
    const ndk::SpAIBinder server(AIBinder_new(clazz, nullptr));
    AIBinder_markVintfStability(server.get());
    const std::shared_ptr<Loopback> loopback = Loopback::Connect(server.get());
    const std::shared_ptr<IAONService> proxy = IAONService::fromBinder(loopback->Root());
    ASSERT_NE(proxy, nullptr);
    EXPECT_EQ(proxy->stopService(1, 1).getStatus(), STATUS_UNKNOWN_TRANSACTION);

    EXPECT_FALSE(IAONService::setDefaultImpl(nullptr));
    EXPECT_TRUE(IAONService::setDefaultImpl(ndk::SharedRefBase::make<EchoService>()));
    EXPECT_TRUE(proxy->stopService(1, 1).isOk());
    int64_t handle = 0;
    EXPECT_TRUE(proxy->registerClient(nullptr, 2, &handle).isOk());
    EXPECT_EQ(handle, 2000);
}

TEST(PackageDefault, RefusesEverythingByItself) {
    const auto none = ndk::SharedRefBase::make<IAONServiceDefault>();
    EXPECT_EQ(none->stopService(1, 1).getStatus(), STATUS_UNKNOWN_TRANSACTION);
    int32_t version = 5;
    std::string hash = "x";
    EXPECT_TRUE(none->getInterfaceVersion(&version).isOk() && none->getInterfaceHash(&hash).isOk());
    EXPECT_EQ(version, 0);
    EXPECT_EQ(hash, "");
    EXPECT_EQ(none->asBinder().get(), nullptr);
    EXPECT_FALSE(none->isRemote());
}

TEST(PackageDelegatorDeathTest, AnotherVersionIsNotStoodInFor) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::shared_ptr<IAONService> none = ndk::SharedRefBase::make<IAONServiceDefault>();
    EXPECT_DEATH(ndk::SharedRefBase::make<IAONServiceDelegator>(none), "");
}

}  // namespace
}  // namespace zarvo::host::aidl
