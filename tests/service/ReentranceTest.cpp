#include <future>

#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using Reentrance = ServiceFixture;

constexpr char kNested[] = "Status(-5, EX_ILLEGAL_STATE): 'called from inside a callback'";

TEST_F(Reentrance, IsRefusedByEveryOperationOnTheDeliveringThread) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    std::vector<std::string> answers;
    client.callback->SetInState([&] {
        int64_t handle = 0;
        std::vector<aon::AONService::AONSensorInfo> sensors;
        const auto& target = client.service;
        answers = {target->registerClient(client.callback, 1, &handle).getDescription(),
                   target->getAonSensorInfoList(&sensors).getDescription(),
                   client.Subscribe(RemoteClient::Config(1, 3)),
                   client.Start(1),
                   client.Stop(1),
                   client.Unsubscribe(),
                   client.Unregister()};
    });
    log.Take();
    EXPECT_EQ(client.Start(3), kOk);
    EXPECT_EQ(answers, std::vector<std::string>(7, kNested));
    Lines expected(7, "E: called from inside a callback");
    expected.emplace_back("I: start success-> c:1, t:3");
    EXPECT_EQ(TakeLines(), expected);
}

TEST_F(Reentrance, IsWelcomeWhereNoOperationDelivers) {
    RemoteClient client(service);
    Run(client, 3, 3);
    std::string answer;
    client.callback->SetInEvent([&] { answer = client.Stop(3); });
    const auto event = std::make_unique<aov_event>();
    event->serviceType = 1;
    stream.Callback()->onCallback(event.get());
    EXPECT_EQ(answer, kOk);
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 0}}));
}

TEST_F(Reentrance, KeepsADeathOnTheDeliveringThreadUntilTheOperationLetsGo) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    // Some binders tell a death on a thread that is in the middle of an operation.
    stream.SetHooks([&] { service->OnRemoteCallbackDied(1, nullptr); }, {});
    log.Take();
    EXPECT_EQ(client.Start(3), kOk);
    EXPECT_EQ(TakeLines(),
              (Lines{"I: start success-> c:1, t:3", "I: OnRemoteCallbackDied:1, startType:3",
                     "I: stop service actual type:3, left:0 for client:1"}));
    EXPECT_EQ(stream.TakeCalls().back(), "stop");
}

TEST_F(Reentrance, LetsAnotherThreadsOperationWaitForTheDelivery) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    std::promise<void> inside, release;
    client.callback->SetInState([&, first = true]() mutable {
        if (!std::exchange(first, false)) return;
        inside.set_value();
        release.get_future().wait();
    });
    auto starting = std::async(std::launch::async, [&] { return client.Start(3); });
    inside.get_future().wait();
    auto stopping = std::async(std::launch::async, [&] { return client.Stop(3); });
    EXPECT_EQ(stopping.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    release.set_value();
    EXPECT_EQ(starting.get(), kOk);
    EXPECT_EQ(stopping.get(), kOk);
}

}  // namespace
}  // namespace zarvo::test
