#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <future>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tests/clients/RecordingCallback.h"
#include "tests/support/Child.h"
#include "tests/support/RuntimeDirectory.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

constexpr char kService[] = "vendor.zarvo.hardware.camera.aon.IAONService/default";
constexpr int32_t kFusion = IAONService::SERVICE_TYPE_FUSION;

/** This process is a client of a service in a process of its own, which is killed. */
class DyingService : public testing::Test {
  protected:
    DyingService() { ABinderProcess_startThreadPool(); }
    ~DyingService() override {
        if (HasFailure()) std::cerr << "the log:\n" << std::ifstream(mLog).rdbuf();
    }

    /** It may not be reached yet. */
    std::unique_ptr<Child> Start() const {
        return std::make_unique<Child>(std::vector<std::string>{SERVICE_PROGRAM}, mLog);
    }
    static std::shared_ptr<IAONService> Await() {
        return IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_waitForService(kService)));
    }
    /** Registers and subscribes; all must go well. */
    void Prepare(IAONService& service) {
        int64_t handle = 0;
        const SensorConfigInfo config{0, 640, 480,     30,
                                      0, 0,   kFusion, IAONService::DELIVERY_MODE_TIME_BASED};
        ASSERT_TRUE(service.registerClient(callback, kFusion, &handle).isOk());
        ASSERT_EQ(handle, 1);
        ASSERT_TRUE(service.subscribeSensor(handle, config).isOk());
    }
    /** Whether the client is served, up to an event. */
    void ExpectServes(IAONService& service) {
        callback->TakeEvents();
        ASSERT_NO_FATAL_FAILURE(Prepare(service));
        EXPECT_TRUE(service.startService(1, kFusion).isOk());
        EXPECT_TRUE(callback->WaitForEvents(1));
    }

    const std::shared_ptr<RecordingCallback> callback =
            ndk::SharedRefBase::make<RecordingCallback>();

  private:
    const RuntimeDirectory mDirectory;
    const std::string mLog = mDirectory.path + "/log";
};

TEST_F(DyingService, AnswersCallsThatWaitWithDeadObject) {
    const auto process = Start();
    const auto service = Await();
    ASSERT_NO_FATAL_FAILURE(Prepare(*service));
    process->Stop();
    std::vector<std::future<binder_status_t>> calls;
    for (int i = 0; i < 3; ++i) {
        calls.push_back(std::async(std::launch::async, [&] {
            std::vector<AONSensorInfo> sensors;
            return service->getAonSensorInfoList(&sensors).getStatus();
        }));
    }
    EXPECT_EQ(calls[0].wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    process->Signal(SIGKILL);
    for (auto& call : calls)
        EXPECT_EQ(call.get(), STATUS_DEAD_OBJECT);
}

TEST_F(DyingService, EndsTheCallWhoseCallbackItIsKilledIn) {
    const auto process = Start();
    const auto service = Await();
    callback->SetInState([&] {
        process->Signal(SIGKILL);
        process->Wait();
    });
    ASSERT_NO_FATAL_FAILURE(Prepare(*service));
    EXPECT_EQ(service->startService(1, kFusion).getStatus(), STATUS_DEAD_OBJECT);
    EXPECT_EQ(callback->TakeStates().size(), 1U);
}

TEST_F(DyingService, IsWaitedForThroughTheDeathOfOneThatDidNotAnswer) {
    auto process = Start();
    Await();
    process->Stop();
    auto found = std::async(std::launch::async, Await);
    EXPECT_EQ(found.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    process->Signal(SIGKILL);
    process->Wait();
    process = Start();
    ASSERT_EQ(found.wait_for(kPatience), std::future_status::ready);
    ExpectServes(*found.get());
}

}  // namespace
}  // namespace zarvo::test
