#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using Subscription = ServiceFixture;

constexpr char kRunningRefusal[] = "can support this config when sensor running";
constexpr char kOtherRefusal[] = "can support this config when other process use";

TEST_F(Subscription, RefusesWhatTheClientOrTheSensorsDoNotOffer) {
    RemoteClient client(service);
    ASSERT_EQ(client.Register(3), kOk);
    log.Take();
    EXPECT_EQ(client.Subscribe(RemoteClient::Config(1, 4)),
              Error(2, "service type need subset of register"));
    EXPECT_EQ(TakeLines(), Lines{"E: subscribe service type is subset of register service type"});
    auto config = RemoteClient::Config(1, 3);
    config.fps = 11;
    EXPECT_EQ(client.Subscribe(config), Error(1, "config not support"));
    EXPECT_EQ(TakeLines(), Lines{"E: config not support"});
    config = RemoteClient::Config(3, 3);
    EXPECT_EQ(client.Subscribe(config), Error(1, "config not support"));
    config = RemoteClient::Config(1, 3);
    config.frameHeight = 240;
    EXPECT_EQ(client.Subscribe(config), Error(1, "config not support"));
    EXPECT_EQ(client.Start(1), Error(2, "start service type is subset of subscribe service type"));
}

TEST_F(Subscription, HandsTheConfigurationToTheStream) {
    RemoteClient client(service);
    client.Register(7);
    log.Take();
    auto config = RemoteClient::Config(1, 3);
    config.reserved0 = 5;
    config.deliveryMode = 4;
    EXPECT_EQ(client.Subscribe(config), kOk);
    EXPECT_EQ(TakeLines(), Lines{"I: subscribe success-> c:1, id:1, t:3, w:640, h:480, f:10"});
    config.frameWidth = 320;
    config.frameHeight = 240;
    EXPECT_EQ(client.Subscribe(config), kOk);  // in the place of the first
    EXPECT_EQ(client.Start(3), kOk);
    const user_param start = stream.Starts().back();
    EXPECT_EQ(start.frameWidth, 320);
    EXPECT_EQ(start.frameHeight, 240);
    EXPECT_EQ(start.mdFrameRate, 10);
}

TEST_F(Subscription, JoinsARunningStreamOnlyWithWhatItHas) {
    RemoteClient client(service);
    Run(client, 3, 1);
    struct Case {
        RemoteClient::SensorConfigInfo config;
        const char* line;
    };
    const auto with = [](auto change) {
        auto config = RemoteClient::Config(1, 3);
        change(config);
        return config;
    };
    const Case cases[] = {
            {RemoteClient::Config(2, 3), "E: exist use sensor id:1, new config:2, not support"},
            {with([](auto& c) { c.fps = 15; }), "E: exist use fps:10, new config:15, not support"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(client.Subscribe(c.config), Error(1, kRunningRefusal));
        EXPECT_EQ(TakeLines(),
                  (Lines{c.line, "E: can not support this config when sensor running"}));
    }
    auto less = with([](auto& c) {
        c.frameWidth = 320;
        c.frameHeight = 240;
        c.fps = 5;
        c.serviceType = 1;
    });
    EXPECT_EQ(client.Subscribe(less), kOk);
    EXPECT_EQ(TakeLines(), Lines{"I: subscribe success-> c:1, id:1, t:1, w:320, h:240, f:5"});
    EXPECT_TRUE(stream.TakeCalls().empty());
    // The stream's subscription stays; what the client may start is what it asked for last.
    client.Stop(1);
    EXPECT_EQ(client.Start(2), Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(client.Start(1), kOk);
    EXPECT_EQ(stream.Starts().back().frameWidth, 640);
}

TEST_F(Subscription, StaysOnOneSensorWhileItIsSubscribed) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    log.Take();
    EXPECT_EQ(client.Subscribe(RemoteClient::Config(2, 3)), Error(1, kOtherRefusal));
    EXPECT_EQ(TakeLines(), (Lines{"E: exist use sensor id:1, new config:2, not support",
                                  "E: can not support this config when other process use"}));
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Subscribe(RemoteClient::Config(2, 3)), kOk);
}

TEST_F(Subscription, StopsWhatRunsBeforeItEnds) {
    RemoteClient client(service);
    Run(client, 3, 3);
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(TakeLines(), (Lines{"W: unsubscribe after stop all service type",
                                  "I: stop service actual type:3, left:0 for client:1"}));
    EXPECT_EQ(stream.TakeCalls(), Lines{"stop"});
    EXPECT_EQ(client.callback->TakeStates(), (std::vector<State>{{1, 0}}));
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_TRUE(TakeLines().empty());
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Subscription, ForcesAModeThatIsNoModeToTimeBased) {
    RemoteClient client(service);
    client.Register(3);
    log.Take();
    auto config = RemoteClient::Config(1, 3);
    config.deliveryMode = -1;
    EXPECT_EQ(client.Subscribe(config), kOk);
    EXPECT_EQ(TakeLines()[0],
              "W: computed deliveryMode is -1, some config not right, force set to TIME_BASED");
    client.Start(1);
    EXPECT_EQ(stream.Starts().back().mdFrameRate, 0);
}

}  // namespace
}  // namespace zarvo::test
