#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using StartStop = ServiceFixture;

TEST_F(StartStop, StartsTheStreamAndTellsTheClientBeforeItReturns) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    log.Take();
    EXPECT_EQ(client.Start(3), kOk);
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 1}}));
    EXPECT_EQ(client.callback->Handle(), 1);
    EXPECT_EQ(TakeLines(), Lines{"I: start success-> c:1, t:3"});
    EXPECT_EQ(stream.Starts().back().serviceType, 3);
}

TEST_F(StartStop, StartsOnlyWhatIsSubscribedAndWhatAlreadyRuns) {
    RemoteClient client(service);
    Run(client, 3, 1);
    EXPECT_EQ(client.Start(4), Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(TakeLines(), Lines{"E: start service type is subset of subscribe service type"});
    const std::string joinOnly = "sensor hub is running, please do start on other process stop";
    EXPECT_EQ(client.Start(3), Error(1, joinOnly));
    EXPECT_EQ(TakeLines(), Lines{"E: " + joinOnly});
    EXPECT_EQ(client.Start(1), kOk);
    EXPECT_TRUE(stream.TakeCalls().empty());
}

TEST_F(StartStop, StopsAPartByRestartingWithTheRest) {
    RemoteClient client(service);
    Run(client, 7, 7);
    EXPECT_EQ(client.Stop(2), kOk);
    EXPECT_EQ(TakeLines(),
              (Lines{"I: stop service actual type:2, left:5 for client:1",
                     "I: finalStartServiceType:5 not 0 restart", "I: start success-> c:1, t:5"}));
    EXPECT_EQ(stream.TakeCalls(), (Lines{"stop", "start 1"}));
    EXPECT_EQ(stream.Starts().back().serviceType, 5);
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 0}, {1, 1}}));

    EXPECT_EQ(client.Stop(10), kOk);
    EXPECT_EQ(TakeLines(),
              (Lines{"W: stop service type:10 more than start service type for client:1",
                     "I: stop service actual type:0, left:5 for client:1",
                     "I: stop service: same do nothing"}));
    EXPECT_EQ(client.Stop(0), kOk);
    EXPECT_EQ(TakeLines(), Lines{"W: stop service type 0 for client:1"});
    EXPECT_TRUE(stream.TakeCalls().empty());

    EXPECT_EQ(client.Stop(-1), kOk);
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk) << "types that are all stopped do not hold the client";
}

TEST_F(StartStop, StopsNothingThatWasNotStarted) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    log.Take();
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(TakeLines(),
              (Lines{"W: client:1 not start service",
                     "W: stop service type:1 more than start service type for client:1",
                     "I: stop service actual type:0, left:0 for client:1"}));
    EXPECT_TRUE(client.callback->TakeStates().empty());
}

TEST_F(StartStop, ReportsARefusingStreamAndCanStartAfterwards) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    log.Take();
    stream.startFault.FailCalls(1);
    EXPECT_EQ(client.Start(3), Error(1, "aon manager StartService failed"));
    EXPECT_EQ(TakeLines(), Lines{"E: aon manager StartService failed:-22"});
    EXPECT_TRUE(client.callback->TakeStates().empty());
    EXPECT_EQ(client.Start(3), kOk);

    // A restart that is refused leaves everything stopped, and the client can go.
    stream.startFault.FailCalls(1);
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 1}, {1, 0}}));
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(StartStop, WaitsForTheCameraToLeave) {
    RemoteClient client(service);
    Run(client, 3, 3, 2);
    const auto manager = aon::AONManager::GetSingleton();
    manager->NotifyOpen(5);
    ASSERT_TRUE(client.callback->WaitForStates(1));
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{2, 2}}));
    log.Take();
    EXPECT_EQ(client.Start(3), Error(1, "aon manager StartService failed"));
    EXPECT_EQ(TakeLines(), Lines{"E: aon manager StartService failed:-19"});
    manager->NotifyClose(5);
    ASSERT_TRUE(client.callback->WaitForStates(1));
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{2, 0}}));
    EXPECT_EQ(client.Start(3), kOk);
}

TEST_F(StartStop, KeepsANoteOfWhatACameraStopped) {
    RemoteClient client(service);
    Run(client, 3, 3, 2);
    const auto manager = aon::AONManager::GetSingleton();
    manager->NotifyOpen(5);
    ASSERT_TRUE(client.callback->WaitForStates(1));
    EXPECT_EQ(client.Unregister(), Error(1, "not stop all service type, unregisterClient failed"));
    manager->NotifyClose(5);
    ASSERT_TRUE(client.callback->WaitForStates(2));
    client.callback->TakeStates();
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(stream.Starts().back().serviceType, 2) << "what is left starts";
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{2, 1}}));
}

TEST_F(StartStop, LeavesAStreamWithoutTypesToWhoeverNamesSome) {
    RemoteClient client(service), next(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    EXPECT_EQ(client.Start(0), kOk);
    client.Unsubscribe();
    client.Die();
    next.Register(3);
    EXPECT_TRUE(stream.Running());
    EXPECT_EQ(next.Stop(1), kOk);
    EXPECT_FALSE(stream.Running());
}

TEST_F(StartStop, BringsTheStreamsEventsToTheClient) {
    RemoteClient client(service);
    Run(client, 15, 15);
    const auto event = std::make_unique<aov_event>();
    event->frame_id = 42;
    event->serviceType = 15;
    event->outputSize = aov_event::kOutputCapacity;
    stream.Callback()->onCallback(event.get());
    const auto events = client.callback->TakeEvents();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].serviceType, 15);
    ASSERT_EQ(events[0].results.size(), 10U);
    EXPECT_EQ(events[0].results[7].toString(),
              "AONResult{key: 0, value: AONResultValue{intValue: 42}}");
}

}  // namespace
}  // namespace zarvo::test
