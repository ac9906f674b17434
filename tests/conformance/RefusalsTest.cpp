#include <algorithm>
#include <limits>

#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

using aon::SensorConfigInfo;

using Handles = Service;
using Refusals = Sensor;

constexpr int32_t kMax = std::numeric_limits<int32_t>::max();

/** Every operation that wants a handle, with arguments that may be anything. */
void ExpectUnknown(const Client& client) {
    EXPECT_EQ(client.Subscribe({}), kSubscribeUnknown) << client.handle;
    EXPECT_EQ(client.Start(kFusion), kUnknown) << client.handle;
    EXPECT_EQ(client.Stop(kFusion), kUnknown) << client.handle;
    EXPECT_EQ(client.Unsubscribe(), kUnknown) << client.handle;
    EXPECT_EQ(client.Unregister(), kUnknown) << client.handle;
}

TEST_F(Handles, AreOneForTheOneClient) {
    Client client(service);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(client.Register(kFusion), kOk);
        EXPECT_EQ(client.handle, 1);
        EXPECT_EQ(client.Unregister(), kOk);
        ExpectUnknown(client);
    }
    // Any service types can be registered.
    for (const int32_t types : {0, -1, kMax}) {
        EXPECT_EQ(client.Register(types), kOk) << types;
        EXPECT_EQ(client.handle, 1);
    }
}

TEST_F(Handles, AreRefusedIfTheyWereNeverGiven) {
    Client client(service);
    ASSERT_EQ(client.Register(kAllTypes), kOk);
    const int64_t given = client.handle;
    for (const int64_t other :
         {int64_t{0}, int64_t{-1}, given + 1, given + (int64_t{1} << 32),
          std::numeric_limits<int64_t>::max(), std::numeric_limits<int64_t>::min()}) {
        client.handle = other;
        ExpectUnknown(client);
    }
    client.handle = given;
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Handles, CanStopAndUnsubscribeWhatNeverWas) {
    Client client(service);
    ASSERT_EQ(client.Register(kFusion), kOk);
    EXPECT_EQ(client.Start(kFusion), kBeyondSubscribed);
    EXPECT_EQ(client.Stop(kFusion), kOk);
    EXPECT_EQ(client.Stop(0), kOk);
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.receiver->TakeStates(), States());
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Refusals, OfServiceTypesBeyondThoseOfTheStepBefore) {
    Client client(service);
    ASSERT_EQ(client.Register(kFusion | kGaze), kOk);
    EXPECT_EQ(client.Subscribe(For(kFaceAngle)), kBeyondRegistered);
    EXPECT_EQ(client.Subscribe(For(kAllTypes)), kBeyondRegistered);
    // Types are looked at before the rest is.
    SensorConfigInfo wrong = For(kFaceAngle);
    wrong.frameWidth = -1;
    EXPECT_EQ(client.Subscribe(wrong), kBeyondRegistered);
    EXPECT_EQ(client.Start(kFusion), kBeyondSubscribed);
    ASSERT_EQ(client.Subscribe(For(kFusion)), kOk);
    EXPECT_EQ(client.Start(kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.Start(kFusion | kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.receiver->TakeStates(), States());
}

TEST_F(Refusals, OfConfigurationsThatAreNotOffered) {
    Client client(service);
    ASSERT_EQ(client.Register(-1), kOk);
    const auto refused = [&](auto change) {
        SensorConfigInfo wrong = config;
        change(wrong);
        EXPECT_EQ(client.Subscribe(wrong), kNotOffered) << wrong.toString();
    };
    const int32_t last =
            std::max_element(sensors.begin(), sensors.end(), [](const auto& a, const auto& b) {
                return a.sensorId < b.sensorId;
            })->sensorId;
    for (const int32_t id : {-1, last + 1, kMax})
        refused([&](SensorConfigInfo& wrong) { wrong.sensorId = id; });
    for (const int32_t length : {0, -1, 1, kMax}) {
        refused([&](SensorConfigInfo& wrong) { wrong.frameWidth = length; });
        refused([&](SensorConfigInfo& wrong) { wrong.frameHeight = length; });
    }
    for (const int32_t rate : {0, -1, config.fps + 1, kMax})
        refused([&](SensorConfigInfo& wrong) { wrong.fps = rate; });
    for (const int32_t types : {64, -1, kAllTypes | 1 << 20})
        refused([&](SensorConfigInfo& wrong) { wrong.serviceType = types; });
    // The configuration before them would have been good, and is not subscribed.
    EXPECT_EQ(client.Start(kFusion), kBeyondSubscribed);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Refusals, OfALeaveWithSomethingStartedOrSubscribed) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kAllTypes, kFusion));
    EXPECT_EQ(client.Unregister(), kStopFirst);
    EXPECT_EQ(client.Stop(kAllTypes), kOk);
    EXPECT_EQ(client.Unregister(), kUnsubscribeFirst);
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Refusals, OfMoreThanWhatRunsLeaveItRunning) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kFusion | kGaze, kFusion));
    EXPECT_EQ(client.Start(kGaze), kOthersRun);
    EXPECT_EQ(client.Start(kFusion | kGaze), kOthersRun);
    const auto refused = [&](auto change) {
        SensorConfigInfo more = For(kFusion);
        change(more);
        EXPECT_EQ(client.Subscribe(more), kMoreThanRuns) << more.toString();
    };
    refused([](SensorConfigInfo& more) { more.serviceType = kAllTypes; });
    refused([](SensorConfigInfo& more) { more.deliveryMode = -1; });
    for (const auto& sensor : sensors) {
        if (sensor.sensorId == config.sensorId || sensor.frameInfos.empty() ||
            sensor.frameInfos[0].supportRates.empty()) {
            continue;
        }
        refused([&](SensorConfigInfo& other) {
            other.sensorId = sensor.sensorId;
            other.frameWidth = sensor.frameInfos[0].frameWidth;
            other.frameHeight = sensor.frameInfos[0].frameHeight;
            other.fps = sensor.frameInfos[0].supportRates[0];
        });
    }
    EXPECT_FALSE(client.receiver->AwaitEvent().empty());
    EXPECT_EQ(client.receiver->TakeStates(), States());
    // Less is welcome, and then limits what may be started.
    EXPECT_EQ(client.Subscribe(For(kFusion)), kOk);
    EXPECT_EQ(client.Start(kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.Stop(kFusion), kOk);
    EXPECT_EQ(client.receiver->TakeStates(), States{Told(kIdle)});
}

TEST_F(Refusals, OfAHigherRateOnlyWhileTheStreamRuns) {
    SensorConfigInfo slow = config;
    for (const auto& size : sensors[0].frameInfos) {
        if (size.frameWidth != config.frameWidth || size.frameHeight != config.frameHeight)
            continue;
        slow.fps = *std::min_element(size.supportRates.begin(), size.supportRates.end());
        break;
    }
    if (slow.sensorId != sensors[0].sensorId || slow.fps == config.fps) {
        GTEST_SKIP() << "no second rate is offered";
    }
    Client client(service);
    ASSERT_EQ(client.Register(kAllTypes), kOk);
    ASSERT_EQ(client.Subscribe(slow), kOk);
    ASSERT_EQ(client.Start(kFusion), kOk);
    EXPECT_EQ(client.Subscribe(config), kMoreThanRuns);
    EXPECT_EQ(client.Stop(kFusion), kOk);
    EXPECT_EQ(client.Subscribe(config), kOk);
}

TEST_F(Refusals, OfASecondSensorUntilTheFirstIsGivenBack) {
    for (const auto& sensor : sensors) {
        SensorConfigInfo second;
        if (sensor.sensorId == config.sensorId || !FirstConfig({sensor}, kFusion, &second))
            continue;
        Client client(service);
        ASSERT_EQ(client.Register(kAllTypes), kOk);
        ASSERT_EQ(client.Subscribe(config), kOk);
        EXPECT_EQ(client.Subscribe(second), kOtherSensor) << second.toString();
        EXPECT_EQ(client.Unsubscribe(), kOk);
        EXPECT_EQ(client.Subscribe(second), kOk) << second.toString();
        return;
    }
    GTEST_SKIP() << "no second sensor is offered";
}

}  // namespace
}  // namespace conformance
