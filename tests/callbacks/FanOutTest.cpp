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

TEST_F(FanOut, PassesOverAClientThatDoesNotAnswerOrThatFails) {
    const RemoteCallback client;
    Register(client.proxy);
    auto& faults = host::BinderFaults::Instance();
    const auto& counters = mRegistry->Counters();
    LogRecorder log;
    AONCallBackInfo event;
    faults.ping.FailCalls(1, 2);
    mRegistry->OnAONEvent(event);
    Report(1, 1);
    EXPECT_EQ(log.TakeTexts().size(), 1U);  // the notice's own line, none about the client
    EXPECT_EQ(counters.droppedNoAnswer.Count(), 1U);
    EXPECT_EQ(counters.statesFailed.Count(), 1U);
    faults.transact.FailCalls(1);
    mRegistry->OnAONEvent(event);
    EXPECT_EQ(counters.droppedFailed.Count(), 1U);
    EXPECT_EQ(counters.delivered.Count(), 0U);
    EXPECT_TRUE(client.local->TakeEvents().empty());
    EXPECT_TRUE(client.local->TakeStates().empty());
    std::chrono::steady_clock::time_point inside;
    client.local->SetInEvent([&] { inside = std::chrono::steady_clock::now(); });
    mRegistry->OnAONEvent(event);
    ASSERT_EQ(client.local->TakeEvents().size(), 1U);
    EXPECT_GE(counters.lastDelivered.Get(), inside);
}

}  // namespace
}  // namespace zarvo::test
