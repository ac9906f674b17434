#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "host/binder/BinderFaults.h"
#include "tests/callbacks/RegistryFixture.h"

namespace zarvo::test {
namespace {

using AONCallBackInfo = RecordingCallback::AONCallBackInfo;
using FanOut = RegistryFixture;

TEST_F(FanOut, DropsAnEventWhileItIsInUseButLetsAStateWait) {
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
    EXPECT_EQ(mRegistry->Counters().droppedBusy.Count(), 1U);

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

TEST_F(FanOut, PassesOverAClientThatDoesNotAnswer) {
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
    EXPECT_EQ(mRegistry->Counters().droppedNoAnswer.Count(), 1U);
    EXPECT_EQ(mRegistry->Counters().statesFailed.Count(), 1U);
    std::chrono::steady_clock::time_point inside;
    client.local->SetInEvent([&] { inside = std::chrono::steady_clock::now(); });
    mRegistry->OnAONEvent(event);
    ASSERT_EQ(client.local->TakeEvents().size(), 1U);
    EXPECT_EQ(client.local->Handle(), 1);
    EXPECT_GE(mRegistry->Counters().lastDelivered.Get(), inside);
}

TEST_F(FanOut, CountsAnEventThatTheClientRefusesAsFailed) {
    class RefusingCallback : public RecordingCallback {
        ndk::ScopedAStatus onAONEvent(int64_t /*clientHandle*/,
                                      const AONCallBackInfo& /*info*/) override {
            return ndk::ScopedAStatus::fromServiceSpecificError(1);
        }
    };
    Register(ndk::SharedRefBase::make<RefusingCallback>());
    AONCallBackInfo event;
    mRegistry->OnAONEvent(event);
    EXPECT_EQ(mRegistry->Counters().droppedFailed.Count(), 1U);
    EXPECT_EQ(mRegistry->Counters().delivered.Count(), 0U);
}

}  // namespace
}  // namespace zarvo::test
