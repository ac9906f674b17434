#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "host/control/FaultTable.h"
#include "host/stream/SimulatorControl.h"
#include "manager/AONManager.h"
#include "service/AONService.h"
#include "tests/clients/RemoteClient.h"
#include "tests/sweep/LibcFaults.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using host::FaultPoint;
using State = RecordingCallback::State;

constexpr char kOk[] = "No error";
constexpr int kTypes = 15;
constexpr int kCamera = 0;

struct Fault : host::NamedFault {};

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
    return faults;
}

/** The service on the simulated sensor, which delivers by command. */
class FaultSweep : public testing::TestWithParam<Fault> {
  protected:
    struct Holdings {
        ptrdiff_t descriptors, threads;
        bool operator==(const Holdings&) const = default;
    };

    FaultSweep() {
        property_set("zarvo.aon.hal.mtk_dump_apu", "1");
        mSimulator.SetManualDelivery(true);
    }
    ~FaultSweep() override {
        mService.reset();
        mSimulator.Shutdown();
    }

    static RemoteClient::SensorConfigInfo Config() { return RemoteClient::Config(0, kTypes); }

    /** A client does everything, whatever the answers are, and dies; a camera comes and goes. */
    void Scenario() {
        const auto connection = host::Loopback::Connect(mService->asBinder().get());
        if (connection == nullptr) return;
        const auto service = IAONService::fromBinder(connection->Root());
        if (service == nullptr) return;
        const auto callback = ndk::SharedRefBase::make<RecordingCallback>();
        int64_t handle = 0;
        for (const bool dies : {false, true}) {
            service->registerClient(callback, kTypes, &handle);
            service->subscribeSensor(handle, Config());
            service->startService(handle, kTypes);
            mSimulator.DeliverOne();
            UseCamera();
            service->startService(handle, kTypes);
            mSimulator.DeliverOne();
            if (dies) break;
            service->stopService(handle, IAONService::SERVICE_TYPE_GAZE);
            service->stopService(handle, kTypes);
            service->unsubscribeSensor(handle);
            service->unregisterClient(handle);
        }
        connection->Kill();
        connection->WaitForNotices();
    }

    void UseCamera() {
        Notify([this] { mManager->NotifyOpen(kCamera); });
        Notify([this] { mManager->NotifyClose(kCamera); });
        Await([this] {
            const auto status = mManager->Status();
            return status && status->deviceCount == 0;
        });
    }
    /** Without a thread it throws, and the next one is told as ever. */
    template <typename Notice>
    void Notify(Notice notice) {
        try {
            notice();
        } catch (const std::system_error&) {
            ++mThrown;
            EXPECT_NO_THROW(notice());
        }
    }

    /** The next client finds everything as it should be. */
    void ExpectWhole() {
        RemoteClient client(mService);
        EXPECT_EQ(client.Register(kTypes), kOk);
        EXPECT_EQ(client.handle, 1);
        EXPECT_EQ(client.Subscribe(Config()), kOk);
        EXPECT_EQ(client.Start(kTypes), kOk);
        // A stream that would not stop for the one before runs on.
        ASSERT_TRUE(mSimulator.DeliverOne());
        EXPECT_TRUE(client.callback->WaitForEvents(1));
        EXPECT_EQ(client.Unsubscribe(), kOk);
        EXPECT_EQ(client.Unregister(), kOk);
        EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{0, 1}, {0, 0}}));
        EXPECT_FALSE(mSimulator.Running());
    }

    static Holdings Now() {
        const auto count = [](const char* directory) {
            return std::distance(std::filesystem::directory_iterator(directory), {});
        };
        return {count("/proc/self/fd"), count("/proc/self/task")};
    }
    template <typename Condition>
    static void Await(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (!condition() && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        ASSERT_TRUE(condition());
    }
    /** Ends the stream's threads, and waits until those of sessions have ended. */
    void ExpectNothingLeft(const Holdings& before) {
        mSimulator.Shutdown();
        Await([&] { return Now() == before; });
    }

    host::SimulatorControl& mSimulator = host::SimulatorControl::Instance();
    const std::shared_ptr<aon::AONManager> mManager = aon::AONManager::GetSingleton();
    std::shared_ptr<aon::AONService> mService = ndk::SharedRefBase::make<aon::AONService>();
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
