#include "callbacks/RemoteCallbackManager.h"

#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "host/binder/BinderFaults.h"
#include "tests/clients/RemoteCallback.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::aon {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;
using test::LogRecorder;
using test::RecordingCallback;
using test::RemoteCallback;
using State = RecordingCallback::State;
using Lines = std::vector<std::string>;

class DeathListener : public IRemoteCallbackManagerListener {
  public:
    using Callback = std::shared_ptr<IAONServiceCallBack>;

    void OnRemoteCallbackDied(int64_t clientHandle, const Callback& callback) override {
        if (inside) inside();
        handles.push_back(clientHandle);
        callbacks.push_back(callback);
    }

    std::function<void()> inside;
    std::vector<int64_t> handles;
    std::vector<Callback> callbacks;
};

class Registry : public testing::Test {
  protected:
    void Report(int sensorId, int state) {
        AONSensorStateInfo info;
        info.sensorId = sensorId;
        info.state = state;
        mRegistry->OnAONSensorEvent(info);
    }
    int64_t Register(const std::shared_ptr<IAONServiceCallBack>& callback) {
        int64_t handle = 0;
        EXPECT_EQ(mRegistry->RegisterClient(callback, &handle), 0);
        return handle;
    }

    // Death notices come to the singleton; every test has it for itself.
    const std::shared_ptr<RemoteCallbackManager> mRegistry = RemoteCallbackManager::GetSingleton();
};

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
    EXPECT_EQ(Register(client.proxy), 1);
    LogRecorder log;
    EXPECT_EQ(Register(client.AnotherProxy()), 1);
    EXPECT_EQ(log.TakeTexts()[1],
              "W: RemoteCallbackManager: callback has already register, client:1");
    EXPECT_EQ(client.local->TakeStates(), (std::vector<State>{{0, 2}, {2, 1}, {0, 2}, {2, 1}}));
    // One link only: one death, one notice.
    DeathListener listener;
    mRegistry->SetListener(&listener);
    client.Die();
    mRegistry->SetListener(nullptr);
    EXPECT_EQ(listener.handles, std::vector<int64_t>{1});
}

TEST_F(Registry, RemembersTheSensorsThatAreNotIdleUntilItIsCleared) {
    Report(3, 2);
    Report(1, 1);
    Report(5, 1);
    Report(5, 2);
    Report(5, 0);
    Report(9, 0);
    const RemoteCallback client, next;
    Register(client.proxy);
    EXPECT_EQ(client.local->TakeStates(), (std::vector<State>{{1, 1}, {3, 2}}));
    EXPECT_EQ(client.local->Handle(), 1);
    Report(3, 0);
    EXPECT_EQ(client.local->TakeStates(), (std::vector<State>{{3, 0}}));

    LogRecorder log;
    mRegistry->Clear();
    EXPECT_EQ(log.TakeTexts(), Lines{"I: RemoteCallbackManager: RemoteCallbackManager clear"});
    EXPECT_FALSE(mRegistry->CheckClientHandleRegistered(1));
    EXPECT_EQ(Register(next.proxy), 1);
    EXPECT_TRUE(next.local->TakeStates().empty());
}

TEST_F(Registry, RemovesADeadClientBeforeItTellsTheListener) {
    const RemoteCallback client;
    DeathListener listener;
    bool registered = true;
    listener.inside = [&] { registered = mRegistry->CheckClientHandleRegistered(1); };
    mRegistry->SetListener(&listener);
    Register(client.proxy);
    LogRecorder log;
    client.Die();
    mRegistry->SetListener(nullptr);
    EXPECT_FALSE(registered);
    EXPECT_EQ(listener.handles, std::vector<int64_t>{1});
    EXPECT_EQ(listener.callbacks[0], client.proxy);
    const Lines lines = log.TakeTexts();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "W: RemoteCallbackManager: unregister client for remote callback died:1");
    EXPECT_EQ(lines[1], "I: RemoteCallbackManager: unregister client:1");

    log.Take();
    mRegistry->OnRemoteCallbackDied(client.proxy->asBinder().get());
    EXPECT_EQ(log.TakeTexts(), Lines{"W: RemoteCallbackManager: can not find the died callback"});
    EXPECT_EQ(listener.handles.size(), 1U);
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

TEST_F(Registry, ServesAClientOfItsOwnProcessWithoutWatchingIt) {
    const auto local = ndk::SharedRefBase::make<RecordingCallback>();
    LogRecorder log;
    EXPECT_EQ(Register(local), 1);
    EXPECT_TRUE(log.WaitFor("Fail to link IAONServiceCallBack to death"));
    Report(1, 1);
    EXPECT_EQ(local->TakeStates(), (std::vector<State>{{1, 1}}));
}

TEST_F(Registry, DropsAnEventWhileItIsInUseButLetsAStateWait) {
    // The registry asks the callback for its binder with its lock held: there it is held up.
    class SlowCallback : public RecordingCallback {
      public:
        std::promise<void> reached;
        std::shared_future<void> release;
        std::atomic<bool> armed{false};

      protected:
        ndk::SpAIBinder createBinder() override {
            if (armed.exchange(false)) {
                reached.set_value();
                release.wait();
            }
            return RecordingCallback::createBinder();
        }
    };
    const auto slow = ndk::SharedRefBase::make<SlowCallback>();
    std::promise<void> release;
    slow->release = release.get_future().share();
    slow->armed = true;
    std::thread registering([&] { Register(slow); });
    slow->reached.get_future().wait();

    LogRecorder log;
    AONCallBackInfo event;
    mRegistry->OnAONEvent(event);
    EXPECT_EQ(log.TakeTexts(), Lines{"W: RemoteCallbackManager: OnAONEvent try_lock failed"});

    std::thread reporting([&] { Report(4, 2); });
    ASSERT_TRUE(log.WaitFor("OnAONSensorEvent:sensorId:4, state:2"));
    EXPECT_TRUE(slow->TakeStates().empty());
    release.set_value();
    registering.join();
    reporting.join();
    ASSERT_TRUE(slow->WaitForStates(1));
    EXPECT_EQ(slow->TakeStates()[0], (State{4, 2}));
    EXPECT_TRUE(slow->TakeEvents().empty());
}

TEST_F(Registry, PassesOverAClientThatDoesNotAnswer) {
    const RemoteCallback client;
    Register(client.proxy);
    auto& faults = host::BinderFaults::Instance();
    faults.ping.FailCalls(1, 2);
    LogRecorder log;
    AONCallBackInfo event;
    event.serviceType = 5;
    mRegistry->OnAONEvent(event);
    Report(1, 1);
    EXPECT_EQ(log.TakeTexts().size(), 1U);  // the notice's own line, none about the client
    EXPECT_TRUE(client.local->TakeEvents().empty());
    EXPECT_TRUE(client.local->TakeStates().empty());
    mRegistry->OnAONEvent(event);
    ASSERT_EQ(client.local->TakeEvents().size(), 1U);
    EXPECT_EQ(client.local->Handle(), 1);
}

TEST_F(Registry, LetsAListenerGoOnlyWhenNoNoticeIsInsideIt) {
    const RemoteCallback client;
    auto listener = std::make_unique<DeathListener>();
    std::promise<void> inside, release;
    listener->inside = [&] {
        inside.set_value();
        release.get_future().wait();
    };
    mRegistry->SetListener(listener.get());
    Register(client.proxy);
    client.connection->Kill();
    inside.get_future().wait();
    auto gone = std::async(std::launch::async, [&] {
        mRegistry->SetListener(nullptr);
        listener.reset();
    });
    EXPECT_EQ(gone.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    release.set_value();
    gone.get();
    client.connection->WaitForNotices();
}

TEST_F(Registry, StandsEventsAndRegistrationsAtTheSameTime) {
    const RemoteCallback one, other;
    std::atomic<bool> done{false};
    std::thread events([&] {
        AONCallBackInfo event;
        while (!done)
            mRegistry->OnAONEvent(event);
    });
    std::thread states([&] {
        while (!done)
            Report(1, 1);
    });
    for (int i = 0; i < 100; ++i) {
        int64_t handle = 0;
        mRegistry->RegisterClient(i % 2 == 0 ? one.proxy : other.proxy, &handle);
        if (i % 3 == 0) mRegistry->Clear();
        if (i % 3 == 1) mRegistry->UnregisterClient(handle);
    }
    done = true;
    events.join();
    states.join();
    mRegistry->Clear();
    EXPECT_EQ(Register(one.proxy), 1);
}

}  // namespace
}  // namespace zarvo::aon
