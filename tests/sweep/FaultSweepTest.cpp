#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "host/binder/services/FoundServices.h"
#include "host/binder/services/PublishedServices.h"
#include "host/control/FaultTable.h"
#include "tests/support/RuntimeDirectory.h"
#include "tests/sweep/LibcFaults.h"
#include "tests/sweep/WholeService.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using host::FaultPoint;

struct Fault : host::NamedFault {
    /** The client finds the service by its name. */
    bool isOfNames = false;
};

/** CTest calls tests by it. */
void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

std::vector<Fault> Faults() {
    LibcFaults& libc = LibcFaults::Instance();
    std::vector<Fault> faults{{{"thread creation", &libc.thread}},
                              {{"socketpair", &libc.socketPair}},
                              {{"sendmsg broken", &libc.sendBroken}},
                              {{"sendmsg interrupted", &libc.sendInterrupted}},
                              {{"sendmsg full", &libc.sendFull}},
                              {{"sendmsg short", &libc.sendShort}},
                              {{"recv broken", &libc.receiveBroken}},
                              {{"recv interrupted", &libc.receiveInterrupted}},
                              {{"dump open", &libc.dumpOpen}},
                              {{"dump write", &libc.dumpWrite}}};
    for (const char* const name : {"stream.start", "stream.stop", "stream.notifyCameraStatus",
                                   "camera.factory", "camera.module", "binder.transact",
                                   "binder.ping", "binder.linkToDeath", "binder.unlinkToDeath"}) {
        faults.push_back({{name, host::FindFault(name)}});
    }
    for (const host::NamedFault& fault : {host::NamedFault{"name socket", &libc.socket},
                                          {"name bind", &libc.bind},
                                          {"name accept", &libc.accept},
                                          {"name connect", &libc.connect},
                                          {"name lock", &libc.lock},
                                          {"name rename", &libc.rename},
                                          {"name thread", &libc.thread},
                                          {"name sendmsg broken", &libc.sendBroken},
                                          {"name recv broken", &libc.receiveBroken}}) {
        faults.push_back({fault, true});
    }
    return faults;
}

class FaultSweep : public WholeService, public testing::WithParamInterface<Fault> {
  protected:
    FaultSweep() {
        const bool dumps = GetParam().name.starts_with("dump");
        property_set("zarvo.aon.hal.mtk_dump_apu", dumps ? "1" : "0");
    }

    /** A client does everything, whatever the answers are, and dies; a camera comes and goes. */
    void Scenario() {
        if (GetParam().isOfNames) {
            LiveByName();
            return;
        }
        const auto connection = host::Loopback::Connect(mService->asBinder().get());
        if (connection == nullptr) return;
        Live(IAONService::fromBinder(connection->Root()));
        connection->Kill();
        connection->WaitForNotices();
    }
    /** The same through the name that the service is published by, which is then withdrawn. */
    void LiveByName() {
        const RuntimeDirectory directory;
        const std::string name = std::string(IAONService::descriptor) + "/default";
        const std::string path = directory.path + "/" + IAONService::descriptor + "_default";
        ABinderProcess_startThreadPool();
        const auto published = AServiceManager_addService(mService->asBinder().get(), name.c_str());
        {
            const auto deadline = std::chrono::steady_clock::now() + kPatience;
            auto root = host::FoundServices::Instance().Find(name, path, deadline);
            // Who finds a name does not wait there in vain.
            EXPECT_LT(std::chrono::steady_clock::now(), deadline);
            EXPECT_TRUE(published == EX_NONE || !root);
            Live(IAONService::fromBinder(ndk::SpAIBinder(root.Release())));
        }
        host::PublishedServices::Instance().WithdrawAll();
        EXPECT_TRUE(std::filesystem::is_empty(directory.path));
    }
    void Live(const std::shared_ptr<IAONService>& service) {
        if (service == nullptr) return;
        const auto callback = ndk::SharedRefBase::make<RecordingCallback>();
        int64_t handle = 0;
        for (const bool dies : {false, true}) {
            service->registerClient(callback, kTypes, &handle);
            service->subscribeSensor(handle, Config());
            service->startService(handle, kTypes);
            mSimulator.DeliverOne();
            UseCamera(*callback);
            service->startService(handle, kTypes);
            mSimulator.DeliverOne();
            if (dies) break;
            service->stopService(handle, IAONService::SERVICE_TYPE_GAZE);
            service->stopService(handle, kTypes);
            service->unsubscribeSensor(handle);
            service->unregisterClient(handle);
        }
    }

    void UseCamera(RecordingCallback& callback) {
        Notify([this] { mManager->NotifyOpen(kCamera); }, callback, {0, 2});
        Notify([this] { mManager->NotifyClose(kCamera); }, callback, {0, 0});
        Notify([this] { ExpectNoCamera(); }, callback, {0, 0});
    }
    /** Without a thread it throws, and the next one is told as ever. */
    template <typename Notice>
    void Notify(Notice notice, RecordingCallback& callback, RecordingCallback::State state) {
        try {
            notice();
        } catch (const std::system_error&) {
            ++mThrown;
            EXPECT_NO_THROW(notice());
            EXPECT_NO_THROW(AwaitCameraNotices());
            const auto states = callback.TakeStates();
            EXPECT_TRUE(!states.empty() && states.back() == state);
        }
    }

    int mThrown = 0;
};

TEST_P(FaultSweep, LeavesAWholeServiceBehindEveryCall) {
    FaultPoint& point = *GetParam().point;
    Scenario();
    ExpectWhole();
    mSimulator.Shutdown();
    const Holdings before = Now();
    uint64_t fired = 0;
    for (bool fires = true; fires && !HasFailure(); fired += fires ? 1 : 0) {
        SCOPED_TRACE("call " + std::to_string(fired + 1));
        const uint64_t last = point.Calls() + fired + 1;
        point.FailCalls(fired + 1);
        Scenario();
        fires = point.Calls() >= last;
        point.Clear();
        ExpectWhole();
        ExpectNothingLeft(before);
    }
    EXPECT_GT(fired, 0U);
    EXPECT_EQ(mThrown > 0, &point == &LibcFaults::Instance().thread);
    std::printf("failed, one after the other: %d calls\n", static_cast<int>(fired));
}

INSTANTIATE_TEST_SUITE_P(Every, FaultSweep, testing::ValuesIn(Faults()), [](const auto& row) {
    std::string name(row.param.name);
    std::replace_if(
            name.begin(), name.end(), [](char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
});

}  // namespace
}  // namespace zarvo::test
