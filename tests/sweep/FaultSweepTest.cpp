#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

#include "host/control/FaultTable.h"
#include "tests/sweep/LibcFaults.h"
#include "tests/sweep/WholeService.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using host::FaultPoint;

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

class FaultSweep : public WholeService, public testing::WithParamInterface<Fault> {
  protected:
    FaultSweep() {
        const bool dumps = GetParam().name.starts_with("dump");
        property_set("zarvo.aon.hal.mtk_dump_apu", dumps ? "1" : "0");
    }

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
        AwaitNoCamera();
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
