#include "host/binder/BinderFaults.h"
#include "tests/callbacks/RegistryFixture.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;
using Registry = RegistryFixture;

TEST_F(Registry, AdmitsOneClientAndTellsWhoIsInTheWay) {
    const RemoteCallback first, second;
    const std::string hash = IAONServiceCallBack::hash;
    LogRecorder log;
    EXPECT_EQ(Register(first.proxy), 1);
    EXPECT_EQ(log.TakeTexts(),
              (Lines{"I: RemoteCallbackManager: RegisterClient callback-> callbackInterfaceHash:" +
                             hash + ", callbackVersionCode:1",
                     "I: RemoteCallbackManager: RegisterClient success -> client count:1",
                     "I: RemoteCallbackManager: RegisterClient success -> notify sensor state"}));

    int64_t handle = 0;
    EXPECT_EQ(mRegistry->RegisterClient(second.proxy, &handle), -2);
    EXPECT_EQ(handle, 1);
    EXPECT_EQ(log.TakeTexts()[1],
              "E: RemoteCallbackManager: this only one client, already has other client:1");
    EXPECT_TRUE(mRegistry->CheckClientHandleRegistered(1));

    EXPECT_EQ(mRegistry->UnregisterClient(1), 0);
    EXPECT_EQ(log.TakeTexts(), Lines{"I: RemoteCallbackManager: unregister client:1"});
    EXPECT_FALSE(mRegistry->CheckClientHandleRegistered(1));
    EXPECT_EQ(Register(second.proxy), 1);
}

TEST_F(Registry, RefusesANullCallbackAndLeavesTheHandle) {
    LogRecorder log;
    int64_t handle = 99;
    EXPECT_EQ(mRegistry->RegisterClient(nullptr, &handle), -1);
    EXPECT_EQ(handle, 99);
    EXPECT_EQ(log.TakeTexts(),
              Lines{"E: RemoteCallbackManager: RegisterClient failed: callback is null"});
    EXPECT_EQ(mRegistry->UnregisterClient(7), 0);
    EXPECT_EQ(log.TakeTexts(), Lines{"W: RemoteCallbackManager: clientHandle 7 not register"});
}

TEST_F(Registry, KnowsAClientAgainBehindAnotherProxy) {
    const RemoteCallback client;
    Report(2, 1);
    Report(0, 2);
    const auto since = [&] { return mRegistry->Status().value().clients[0].since.steady; };
    EXPECT_EQ(Register(client.proxy), 1);
    const auto first = since();
    LogRecorder log;
    EXPECT_EQ(Register(IAONServiceCallBack::fromBinder(client.connection->Root())), 1);
    EXPECT_EQ(since(), first);
    EXPECT_EQ(log.TakeTexts()[1],
              "W: RemoteCallbackManager: callback has already register, client:1");
    EXPECT_EQ(client.local->TakeStates(), (std::vector<State>{{0, 2}, {2, 1}, {0, 2}, {2, 1}}));
    EXPECT_EQ(mRegistry->Counters().statesDelivered.Count(), 4U);
    // One link only: a second notice would find nobody, and say so.
    log.Take();
    client.Die();
    EXPECT_NE(log.TakeTexts().back(), "W: RemoteCallbackManager: can not find the died callback");
}

TEST_F(Registry, GoesOnWhenDeathCannotBeWatched) {
    const RemoteCallback client;
    auto& faults = host::BinderFaults::Instance();
    LogRecorder log;
    faults.linkToDeath.FailCalls(1);
    EXPECT_EQ(Register(client.proxy), 1);
    EXPECT_EQ(log.TakeTexts()[1],
              "E: RemoteCallbackManager: Fail to link IAONServiceCallBack to death");
    EXPECT_EQ(Register(client.proxy), 1);  // the link of before is not there to be undone
    EXPECT_EQ(log.TakeTexts()[2],
              "W: RemoteCallbackManager: fail to unlink IAONServiceCallBack to death");
    faults.unlinkToDeath.FailCalls(1);
    mRegistry->UnregisterClient(1);
    const Lines lines = log.TakeTexts();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(
            lines[1].starts_with("E: RemoteCallbackManager: Failed to unlink "
                                 "IAONServiceCallBack to death, code:"));
    EXPECT_TRUE(lines[1].ends_with(","));
    EXPECT_FALSE(mRegistry->CheckClientHandleRegistered(1));
    EXPECT_EQ(Register(client.proxy), 1);
}

}  // namespace
}  // namespace zarvo::test
