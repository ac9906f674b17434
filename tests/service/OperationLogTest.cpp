#include <functional>

#include "service/SensorArbitration.h"
#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

/** What the service logs of each operation. */
class OperationLog : public ServiceFixture {
  protected:
    struct Row {
        std::function<void()> act;
        Lines lines;
    };
    void ExpectLines(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            SCOPED_TRACE("row " + std::to_string(&row - rows.data()));
            log.Take();
            row.act();
            EXPECT_EQ(TakeLines(), row.lines);
        }
    }
    static RemoteClient::SensorConfigInfo WithRate(int fps) {
        auto config = RemoteClient::Config(1, 3);
        config.fps = fps;
        return config;
    }

    RemoteClient client{service}, next{service};
};

TEST(ServiceLife, TellsHowItBeginsAndEnds) {
    LogRecorder log;
    ndk::SharedRefBase::make<aon::AONService>();
    EXPECT_EQ(
            log.TakeTexts(),
            (Lines{"I: AONService: Create AON Service", "I: AONManager: aon manager create",
                   "I: AONManager: register callback success", "I: AONService: AON service destroy",
                   "I: RemoteCallbackManager: RemoteCallbackManager clear",
                   "I: AONManager: unregister callback success"}));
}

TEST_F(OperationLog, TellsWhatIsRefused) {
    int64_t handle = 0;
    const std::string unknown = "E: in_clientHandle not register";
    const std::string tooMuch = "E: start service type is subset of subscribe service type";
    ExpectLines({
            {[&] { service->registerClient(nullptr, 1, &handle); }, {"E: callback is null"}},
            {[&] { client.Subscribe(RemoteClient::Config(1, 1)); }, {unknown}},
            {[&] { client.Start(1); }, {unknown}},
            {[&] { client.Stop(1); }, {unknown}},
            {[&] { client.Unsubscribe(); }, {unknown}},
            {[&] { client.Unregister(); }, {unknown}},
            {[&] { client.Register(3); }, {"I: register callback success-> client:1, type:3"}},
            {[&] { client.Subscribe(RemoteClient::Config(1, 4)); },
             {"E: subscribe service type is subset of register service type"}},
            {[&] { client.Subscribe(WithRate(11)); }, {"E: config not support"}},
            {[&] { client.Subscribe(WithRate(10)); },
             {"I: subscribe success-> c:1, id:1, t:3, w:640, h:480, f:10"}},
            {[&] { client.Start(4); }, {tooMuch}},
            {[&] { client.Subscribe(RemoteClient::Config(2, 3)); },
             {"E: exist use sensor id:1, new config:2, not support",
              "E: can not support this config when other process use"}},
            {[&] { client.Start(1); }, {"I: start success-> c:1, t:1"}},
            {[&] { client.Start(3); },
             {"E: sensor hub is running, please do start on other process stop"}},
            {[&] { client.Subscribe(WithRate(15)); },
             {"E: exist use fps:10, new config:15, not support",
              "E: can not support this config when sensor running"}},
            {[&] { client.Unregister(); },
             {"E: not stop all service type, unregisterClient failed"}},
            {[&] { client.Stop(1); }, {"I: stop service actual type:1, left:0 for client:1"}},
            {[&] { client.Unregister(); },
             {"E: not unsubscribe all service type, unregisterClient failed"}},
            {[&] { client.Unsubscribe(); }, {}},
            {[&] { client.Unregister(); }, {}},
    });
}

// Whether one fits at all, the model says.
TEST(Arbitration, NamesTheFirstFieldThatDoesNotFit) {
    const aon::SensorConfigInfo merged{0, 640, 480, 10, 0, 0, 7, 3};
    const struct {
        aon::SensorConfigInfo wanted;
        std::string conflict;
    } cases[] = {
            {{2, 999, 999, 99, 0, 0, 8, 4}, "sensor id 0 2"},
            {{0, 999, 999, 99, 0, 0, 8, 4}, "fps 10 99"},
            {{0, 999, 999, 10, 0, 0, 8, 4}, "frameWidth 640 999"},
            {{0, 640, 999, 10, 0, 0, 8, 4}, "frameHeight 480 999"},
            {{0, 640, 480, 10, 0, 0, 8, 4}, "serviceType 7 8"},
            {{0, 640, 480, 10, 0, 0, 7, 4}, "deliveryMode 3 4"},
    };
    for (const auto& c : cases) {
        const auto conflict = aon::FindConflict(merged, c.wanted, true);
        ASSERT_TRUE(conflict) << c.conflict;
        EXPECT_EQ(std::string(conflict->field) + " " + std::to_string(conflict->merged) + " " +
                          std::to_string(conflict->wanted),
                  c.conflict);
    }
}

TEST_F(OperationLog, TellsHowServiceTypesStartAndStop) {
    auto noMode = RemoteClient::Config(1, 7);
    noMode.deliveryMode = -1;
    client.Register(7);
    stream.startFault.FailCalls(1);
    ExpectLines({
            {[&] { client.Subscribe(noMode); },
             {"W: computed deliveryMode is -1, some config not right, force set to TIME_BASED",
              "I: subscribe success-> c:1, id:1, t:7, w:640, h:480, f:10"}},
            {[&] { client.Stop(1); },
             {"W: client:1 not start service",
              "W: stop service type:1 more than start service type for client:1",
              "I: stop service actual type:0, left:0 for client:1"}},
            {[&] { client.Start(7); }, {"E: aon manager StartService failed:-22"}},
            {[&] { client.Start(7); }, {"I: start success-> c:1, t:7"}},
            {[&] { client.Stop(2); },
             {"I: stop service actual type:2, left:5 for client:1",
              "I: finalStartServiceType:5 not 0 restart", "I: start success-> c:1, t:5"}},
            {[&] { client.Stop(10); },
             {"W: stop service type:10 more than start service type for client:1",
              "I: stop service actual type:0, left:5 for client:1",
              "I: stop service: same do nothing"}},
            {[&] { client.Stop(0); }, {"W: stop service type 0 for client:1"}},
            {[&] { client.Unsubscribe(); },
             {"W: unsubscribe after stop all service type",
              "I: stop service actual type:5, left:0 for client:1"}},
    });
}

TEST_F(OperationLog, TellsHowAClientEnds) {
    Run(client, 3, 3);
    ExpectLines({
            {[&] { next.Register(8); },
             {"W: service has other callback", "W: so do stop service and remove old callback",
              "I: stop service actual type:3, left:0 for client:1", "E: UnsubscribeSensor failed:0",
              "I: register callback success-> client:1, type:8"}},
            // The old one's end is nobody's business any more.
            {[&] { client.Die(); }, {}},
    });
    Run(next, 3, 3);
    ExpectLines({
            {[&] { next.Die(); },
             {"I: OnRemoteCallbackDied:1, startType:3",
              "I: stop service actual type:3, left:0 for client:1"}},
    });
}

TEST_F(OperationLog, TellsOfALateNoticeThatItFindsTheHandleInOtherHands) {
    Run(client, 3, 3);
    // The registry loses the client first when it dies; the service is not told yet.
    aon::RemoteCallbackManager::GetSingleton()->UnregisterClient(1);
    ExpectLines({
            {[&] { next.Register(8); },
             {"I: stop service actual type:3, left:0 for client:1",
              "I: register callback success-> client:1, type:8"}},
            {[&] { next.Subscribe(RemoteClient::Config(1, 8)); },
             {"I: subscribe success-> c:1, id:1, t:8, w:640, h:480, f:10"}},
            {[&] { next.Start(8); }, {"I: start success-> c:1, t:8"}},
            {[&] { service->OnRemoteCallbackDied(1, client.callback); },
             {"I: OnRemoteCallbackDied:1, startType:0"}},
    });
    EXPECT_TRUE(stream.Running());
}

TEST_F(OperationLog, TellsOfAListOfSensorsAndOfCallsFromInsideACallback) {
    std::vector<aon::AONService::AONSensorInfo> sensors(7);
    client.Register(3);
    client.Subscribe(WithRate(10));
    client.callback->SetInState([&] { client.Stop(3); });
    ExpectLines({
            {[&] { service->getAonSensorInfoList(&sensors); },
             {"I: get aon sensor list success-> size:2"}},
            {[&] { client.Start(3); },
             {"E: called from inside a callback", "I: start success-> c:1, t:3"}},
    });
    ASSERT_EQ(sensors.size(), 2U);
    EXPECT_EQ(sensors[1].toString(),
              "AONSensorInfo{sensorId: 2, reserved0: 0, reserved1: 0, supportMode: 63, "
              "frameInfos: [FrameInfo{frameWidth: 640, frameHeight: 480, supportRates: [5, 10, "
              "15]}, FrameInfo{frameWidth: 320, frameHeight: 240, supportRates: [5, 10]}]}");
}

TEST_F(OperationLog, KeepsADeathOnTheDeliveringThreadUntilTheOperationLetsGo) {
    client.Register(3);
    client.Subscribe(WithRate(10));
    // Some binders tell a death on a thread that is in the middle of an operation.
    stream.SetHooks([&] { service->OnRemoteCallbackDied(1, nullptr); }, {});
    ExpectLines({{[&] { client.Start(3); },
                  {"I: start success-> c:1, t:3", "I: OnRemoteCallbackDied:1, startType:3",
                   "I: stop service actual type:3, left:0 for client:1"}}});
    EXPECT_EQ(stream.TakeCalls().back(), "stop");
}

}  // namespace
}  // namespace zarvo::test
