#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;

using Registration = ServiceFixture;

TEST(ServiceLife, JoinsItsCollaboratorsAndLetsThemGo) {
    LogRecorder log;
    {
        const auto service = ndk::SharedRefBase::make<aon::AONService>();
        EXPECT_EQ(log.TakeTexts(),
                  (Lines{"I: AONService: Create AON Service", "I: AONManager: aon manager create",
                         "I: AONManager: register callback success"}));
    }
    EXPECT_EQ(log.TakeTexts(), (Lines{"I: AONService: AON service destroy",
                                      "I: RemoteCallbackManager: RemoteCallbackManager clear",
                                      "I: AONManager: unregister callback success"}));
}

TEST_F(Registration, GivesAHandleAndTakesItBack) {
    RemoteClient client(service);
    log.Take();
    EXPECT_EQ(client.Register(3), kOk);
    EXPECT_EQ(client.handle, 1);
    EXPECT_EQ(TakeLines(), Lines{"I: register callback success-> client:1, type:3"});
    EXPECT_EQ(client.Unregister(), kOk);
    EXPECT_TRUE(TakeLines().empty());
    EXPECT_EQ(client.Unregister(), Error(1, "in_clientHandle not register"));
    EXPECT_EQ(TakeLines(), Lines{"E: in_clientHandle not register"});
}

TEST_F(Registration, RefusesANullCallbackAndABinderOfAnotherKind) {
    RemoteClient client(service);
    log.Take();
    int64_t handle = 99;
    const std::string refusal = "Status(-3, EX_ILLEGAL_ARGUMENT): ''";
    EXPECT_EQ(client.service->registerClient(nullptr, 1, &handle).getDescription(), refusal);
    EXPECT_EQ(service->registerClient(nullptr, 1, &handle).getDescription(), refusal);
    EXPECT_EQ(handle, 99);
    EXPECT_EQ(TakeLines(), Lines(2, "E: callback is null"));

    // The service's own binder, given as a callback.
    const ndk::SpAIBinder target = client.service->asBinder();
    ndk::ScopedAParcel request, reply;
    ndk::ScopedAStatus status;
    ASSERT_EQ(AIBinder_prepareTransaction(target.get(), request.getR()), STATUS_OK);
    AParcel_writeStrongBinder(request.get(), target.get());
    AParcel_writeInt32(request.get(), 1);
    ASSERT_EQ(AIBinder_transact(target.get(), IAONService::TRANSACTION_registerClient,
                                request.getR(), reply.getR(), 0),
              STATUS_OK);
    ASSERT_EQ(AParcel_readStatusHeader(reply.get(), status.getR()), STATUS_OK);
    EXPECT_EQ(status.getDescription(), refusal);
    EXPECT_EQ(TakeLines(), Lines{"E: callback is null"});
}

TEST_F(Registration, RefusesHandlesThatItNeverGave) {
    RemoteClient client(service);
    client.handle = 17;
    log.Take();
    EXPECT_EQ(client.Subscribe(RemoteClient::Config(1, 1)), Error(1, "clientHandle not register"));
    EXPECT_EQ(client.Start(1), Error(1, "in_clientHandle not register"));
    EXPECT_EQ(client.Stop(1), Error(1, "in_clientHandle not register"));
    EXPECT_EQ(client.Unsubscribe(), Error(1, "in_clientHandle not register"));
    EXPECT_EQ(client.Unregister(), Error(1, "in_clientHandle not register"));
    EXPECT_EQ(TakeLines(), Lines(5, "E: in_clientHandle not register"));
}

TEST_F(Registration, HoldsAClientThatHasSomethingLeft) {
    RemoteClient client(service);
    Run(client, 3, 3);
    const std::string stopFirst = "not stop all service type, unregisterClient failed";
    EXPECT_EQ(client.Unregister(), Error(1, stopFirst));
    EXPECT_EQ(TakeLines(), Lines{"E: " + stopFirst});
    EXPECT_EQ(client.Stop(3), kOk);
    const std::string unsubscribeFirst =
            "not unsubscribe all service type, unregisterClient failed";
    EXPECT_EQ(client.Unregister(), Error(1, unsubscribeFirst));
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Registration, PutsANewClientInThePlaceOfTheOldOne) {
    RemoteClient old(service), next(service);
    Run(old, 3, 3);
    EXPECT_EQ(next.Register(8), kOk);
    EXPECT_EQ(next.handle, 1);
    EXPECT_EQ(TakeLines(), (Lines{"W: service has other callback",
                                  "W: so do stop service and remove old callback",
                                  "I: stop service actual type:3, left:0 for client:1",
                                  "E: UnsubscribeSensor failed:0",
                                  "I: register callback success-> client:1, type:8"}));
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
    EXPECT_EQ(old.callback->TakeStates(), (std::vector<State>{{1, 0}}));
    // The old client's subscription and types are gone with it.
    EXPECT_EQ(next.Start(8), Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(next.Subscribe(RemoteClient::Config(2, 8)), kOk);
    EXPECT_EQ(next.Start(8), kOk);
    EXPECT_EQ(next.callback->TakeStates(), (std::vector<State>{{2, 1}}));
    // The old one's end is nobody's business any more.
    Forget(next);
    old.Die();
    EXPECT_TRUE(TakeLines().empty());
    EXPECT_TRUE(stream.Running());
    EXPECT_EQ(next.Stop(8), kOk);
}

TEST_F(Registration, RegistersTheSameClientAgainWithoutLosingWhatItHas) {
    RemoteClient client(service);
    Run(client, 3, 1);
    EXPECT_EQ(client.Register(7), kOk);
    EXPECT_EQ(client.handle, 1);
    EXPECT_TRUE(stream.TakeCalls().empty());
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 1}}));
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
}

TEST_F(Registration, CleansUpAfterADeadClient) {
    RemoteClient client(service), next(service);
    Run(client, 3, 3);
    client.Die();
    EXPECT_EQ(TakeLines(), (Lines{"I: OnRemoteCallbackDied:1, startType:3",
                                  "I: stop service actual type:3, left:0 for client:1"}));
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
    EXPECT_EQ(next.Register(1), kOk);
    EXPECT_EQ(TakeLines(), Lines{"I: register callback success-> client:1, type:1"});
    EXPECT_EQ(next.Start(1), Error(2, "start service type is subset of subscribe service type"));
}

TEST_F(Registration, CleansUpBeforeAHandleIsReusedWhenTheNoticeIsLate) {
    RemoteClient dead(service), next(service);
    Run(dead, 3, 3);
    const auto registry = aon::RemoteCallbackManager::GetSingleton();
    // The registry lost the client, as it does first when a client dies; the service was not told.
    registry->UnregisterClient(1);
    log.Take();
    ASSERT_EQ(next.Register(8), kOk);
    EXPECT_EQ(next.handle, 1);
    EXPECT_EQ(TakeLines(), (Lines{"I: stop service actual type:3, left:0 for client:1",
                                  "I: register callback success-> client:1, type:8"}));
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
    ASSERT_EQ(next.Subscribe(RemoteClient::Config(1, 8)), kOk);
    ASSERT_EQ(next.Start(8), kOk);
    Forget(next);

    // The late notice finds the handle in other hands.
    service->OnRemoteCallbackDied(1, dead.callback);
    EXPECT_EQ(TakeLines(), Lines{"I: OnRemoteCallbackDied:1, startType:0"});
    EXPECT_TRUE(stream.TakeCalls().empty());
    EXPECT_EQ(next.Stop(8), kOk);
}

TEST_F(Registration, ListsTheSensorsInTheInterfacesWords) {
    RemoteClient client(service);
    log.Take();
    std::vector<AONSensorInfo> sensors(7);
    ASSERT_TRUE(client.service->getAonSensorInfoList(&sensors).isOk());
    EXPECT_EQ(TakeLines(), Lines{"I: get aon sensor list success-> size:2"});
    ASSERT_EQ(sensors.size(), 2U);
    EXPECT_EQ(sensors[1].toString(),
              "AONSensorInfo{sensorId: 2, reserved0: 0, reserved1: 0, supportMode: 63, "
              "frameInfos: [FrameInfo{frameWidth: 640, frameHeight: 480, supportRates: [5, 10, "
              "15]}, FrameInfo{frameWidth: 320, frameHeight: 240, supportRates: [5, 10]}]}");
    int32_t version = 0;
    std::string hash;
    EXPECT_TRUE(client.service->getInterfaceVersion(&version).isOk());
    EXPECT_TRUE(client.service->getInterfaceHash(&hash).isOk());
    EXPECT_EQ(version, 1);
    EXPECT_EQ(hash, IAONService::hash);
}

}  // namespace
}  // namespace zarvo::test
