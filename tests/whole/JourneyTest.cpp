#include <gtest/gtest.h>

#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"
#include "tests/clients/RemoteClient.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using host::SimulatorControl;
using State = RecordingCallback::State;

constexpr char kOk[] = "No error";

/** The library as it is shipped, on the simulated sensor, with clients behind loopbacks. */
class Journey : public testing::Test {
  protected:
    ~Journey() override {
        mService.reset();
        mSimulator.Shutdown();
    }

    void Run(RemoteClient& client, int serviceTypes, size_t events = 3) {
        ASSERT_EQ(client.Register(serviceTypes), kOk);
        auto config = RemoteClient::Config(0, serviceTypes);
        config.fps = 30;
        ASSERT_EQ(client.Subscribe(config), kOk);
        ASSERT_EQ(client.Start(serviceTypes), kOk);
        ASSERT_TRUE(client.callback->WaitForEvents(events));
    }

    SimulatorControl& mSimulator = SimulatorControl::Instance();
    std::shared_ptr<aon::AONService> mService = ndk::SharedRefBase::make<aon::AONService>();
};

TEST_F(Journey, BringsEveryKindOfResultFromTheSensorToTheClient) {
    RemoteClient client(mService);
    Run(client, 15);
    const AONCallBackInfo info = client.callback->TakeEvents().back();
    EXPECT_EQ(info.serviceType, 15);
    std::map<int, const AONResultValue*> results;
    for (const AONResult& result : info.results)
        results[result.key] = &result.value;
    for (const int key : {0, 1, 2, 100, 101, 102, 103, 200, 300, 400, 700, 701, 702, 703}) {
        ASSERT_EQ(results.count(key), 1U) << key;
    }
    EXPECT_EQ(results[1]->toString(), "AONResultValue{intValue: 640}");
    EXPECT_EQ(results[2]->toString(), "AONResultValue{intValue: 480}");
    EXPECT_EQ(results[703]->get<AONResultValue::Tag::byteArray>().size(), 640U * 480 * 3 / 2);
    client.Unsubscribe();
    client.Unregister();
}

TEST_F(Journey, YieldsTheSensorToTheCameraAndComesBack) {
    RemoteClient client(mService);
    Run(client, 3);
    mSimulator.OpenCamera(0);
    ASSERT_TRUE(client.callback->WaitForStates(2));
    EXPECT_FALSE(mSimulator.Running());
    EXPECT_NE(client.Start(3), kOk);
    mSimulator.CloseCamera(0);
    ASSERT_TRUE(client.callback->WaitForStates(3));
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{0, 1}, {0, 2}, {0, 0}}));
    client.callback->TakeEvents();
    EXPECT_EQ(client.Start(3), kOk);
    EXPECT_TRUE(client.callback->WaitForEvents(2));
    client.Unsubscribe();
}

TEST_F(Journey, ReleasesTheSensorOfAClientThatDiesWhereverItIs) {
    for (int round = 0; round < 5; ++round) {
        RemoteClient client(mService);
        Run(client, 1);
        EXPECT_EQ(client.handle, 1);
        client.Die();
        EXPECT_FALSE(mSimulator.Running());
        RemoteClient inEvent(mService);
        inEvent.callback->SetInEvent([&] { inEvent.BeginToDie(); });
        mSimulator.SetManualDelivery(true);
        Run(inEvent, 1, 0);
        mSimulator.DeliverOne();
        mSimulator.SetManualDelivery(false);
        inEvent.Die();
        EXPECT_FALSE(mSimulator.Running());
        mSimulator.Shutdown();  // the event in which the client died has come to its end
    }
}

}  // namespace
}  // namespace zarvo::test
