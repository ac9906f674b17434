#include <future>

#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

using Callbacks = Sensor;
using Threads = Sensor;

TEST_F(Callbacks, AreRefusedEveryOperation) {
    std::vector<std::string> answers;
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Prepare(client));
    client.receiver->SetInState([&] {
        int64_t handle = 0;
        std::vector<aon::AONSensorInfo> list;
        answers = {Answer(service->registerClient(client.receiver, kFusion, &handle)),
                   Answer(service->getAonSensorInfoList(&list)),
                   client.Subscribe(config),
                   client.Start(kFusion),
                   client.Stop(kFusion),
                   client.Unsubscribe(),
                   client.Unregister()};
    });
    EXPECT_EQ(client.Start(kFusion), kOk);
    EXPECT_EQ(answers, std::vector<std::string>(7, kNested));
    client.receiver->SetInState(nullptr);
    // None of them did anything.
    EXPECT_FALSE(client.receiver->AwaitEvent().empty());
    EXPECT_EQ(client.Unregister(), kStopFirst);
}

TEST_F(Threads, WaitForTheOperationOfAnother) {
    std::promise<void> inside, release;
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Prepare(client));
    client.receiver->SetInState([&] {
        client.receiver->SetInState(nullptr);
        inside.set_value();
        release.get_future().wait();
    });
    auto starting = std::async(std::launch::async, [&] { return client.Start(kFusion); });
    EXPECT_EQ(inside.get_future().wait_for(kPatience), std::future_status::ready);
    auto stopping = std::async(std::launch::async, [&] { return client.Stop(kFusion); });
    EXPECT_EQ(stopping.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    release.set_value();
    EXPECT_EQ(starting.get(), kOk);
    EXPECT_EQ(stopping.get(), kOk);
    EXPECT_EQ(client.receiver->TakeStates(), (States{Told(kStarted), Told(kIdle)}));
}

TEST_F(Threads, OfOneClientMayCallAtOnce) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Prepare(client));
    const auto startAndStop = [&](int32_t types) {
        for (int i = 0; i < 20; ++i) {
            const std::string started = client.Start(types);
            EXPECT_TRUE(started == kOk || started == kOthersRun) << started;
            EXPECT_EQ(client.Stop(types), kOk);
            const std::string held = client.Unregister();
            EXPECT_TRUE(held == kStopFirst || held == kUnsubscribeFirst) << held;
        }
    };
    auto other = std::async(std::launch::async, startAndStop, kFusion);
    startAndStop(kGaze);
    other.get();
    EXPECT_EQ(client.Stop(kAllTypes), kOk);
    // Each start had its end, in this order.
    const States states = client.receiver->TakeStates();
    for (size_t i = 0; i < states.size(); ++i)
        EXPECT_EQ(states[i], Told(i % 2 == 0 ? kStarted : kIdle)) << i;
    EXPECT_EQ(states.size() % 2, 0U);
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Threads, OfTwoClientsPutEachOtherOut) {
    const auto live = [this] {
        for (int i = 0; i < 20; ++i) {
            Client client(service);
            EXPECT_EQ(client.Register(kAllTypes), kOk);
            EXPECT_EQ(client.handle, kHandle);
            // Whatever the other does meanwhile, each call has an answer.
            client.Subscribe(config);
            client.Start(kFusion);
            EXPECT_FALSE(Sensors(*service).empty());
        }
    };
    auto other = std::async(std::launch::async, live);
    live();
    other.get();
    Client last(service);
    ASSERT_NO_FATAL_FAILURE(Run(last, kAllTypes, kAllTypes));
    EXPECT_FALSE(last.receiver->AwaitEvent().empty());
}

}  // namespace
}  // namespace conformance
