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
        EXPECT_EQ(client.handle, kHandle);
        // What never was can be stopped and unsubscribed.
        EXPECT_EQ(client.Start(kFusion), kBeyondSubscribed);
        EXPECT_EQ(client.Stop(kFusion), kOk);
        EXPECT_EQ(client.Unsubscribe(), kOk);
        EXPECT_EQ(client.receiver->TakeStates(), States());
        EXPECT_EQ(client.Unregister(), kOk);
        ExpectUnknown(client);
    }
    // Any service types can be registered.
    for (const int32_t types : {0, -1, kMax})
        EXPECT_EQ(client.Register(types), kOk) << types;
    constexpr int64_t kFar = std::numeric_limits<int64_t>::max();
    for (const int64_t other :
         {int64_t{0}, int64_t{-1}, kHandle + 1, kHandle + (int64_t{1} << 32), kFar, -kFar - 1}) {
        client.handle = other;
        ExpectUnknown(client);
    }
}

TEST_F(Refusals, OfServiceTypesBeyondThoseOfTheStepBefore) {
    Client client(service);
    ASSERT_EQ(client.Register(kFusion | kGaze), kOk);
    EXPECT_EQ(client.Subscribe(For(kFaceAngle)), kBeyondRegistered);
    // Types are looked at before the rest is.
    SensorConfigInfo wrong = For(kAllTypes);
    wrong.frameWidth = -1;
    EXPECT_EQ(client.Subscribe(wrong), kBeyondRegistered);
    ASSERT_EQ(client.Subscribe(For(kFusion)), kOk);
    EXPECT_EQ(client.Start(kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.Start(kFusion | kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.receiver->TakeStates(), States());
}

TEST_F(Refusals, OfConfigurationsThatAreNotOffered) {
    Client client(service);
    ASSERT_EQ(client.Register(-1), kOk);
    int32_t last = 0;
    for (const auto& sensor : sensors)
        last = std::max(last, sensor.sensorId);
    const struct {
        int32_t SensorConfigInfo::*field;
        std::vector<int32_t> values;
    } wrongs[] = {{&SensorConfigInfo::sensorId, {-1, last + 1, kMax}},
                  {&SensorConfigInfo::frameWidth, {0, -1, 1, kMax}},
                  {&SensorConfigInfo::frameHeight, {0, -1, 1, kMax}},
                  {&SensorConfigInfo::fps, {0, -1, config.fps + 1, kMax}},
                  {&SensorConfigInfo::serviceType, {64, -1, kAllTypes | 1 << 20}}};
    for (const auto& [field, values] : wrongs) {
        for (const int32_t value : values) {
            SensorConfigInfo wrong = config;
            wrong.*field = value;
            EXPECT_EQ(client.Subscribe(wrong), kNotOffered) << wrong.toString();
        }
    }
    // The configuration before them would have been good, and is not subscribed.
    EXPECT_EQ(client.Start(kFusion), kBeyondSubscribed);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Refusals, OfMoreThanWhatRunsLeaveItRunning) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kFusion | kGaze, kFusion));
    EXPECT_EQ(client.Unregister(), kStopFirst);
    EXPECT_EQ(client.Start(kGaze), kOthersRun);
    EXPECT_EQ(client.Start(kFusion | kGaze), kOthersRun);
    SensorConfigInfo otherMode = For(kFusion);
    otherMode.deliveryMode = -1;
    EXPECT_EQ(client.Subscribe(For(kAllTypes)), kMoreThanRuns);
    EXPECT_EQ(client.Subscribe(otherMode), kMoreThanRuns);
    EXPECT_FALSE(client.receiver->AwaitEvent().empty());
    EXPECT_EQ(client.receiver->TakeStates(), States());
    // Less is welcome, and then limits what may be started.
    EXPECT_EQ(client.Subscribe(For(kFusion)), kOk);
    EXPECT_EQ(client.Start(kGaze), kBeyondSubscribed);
    EXPECT_EQ(client.Stop(kFusion), kOk);
    EXPECT_EQ(client.receiver->TakeStates(), States{Told(kIdle)});
    EXPECT_EQ(client.Unregister(), kUnsubscribeFirst);
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Unregister(), kOk);
}

TEST_F(Refusals, OfASecondSensorUntilTheFirstIsGivenBack) {
    SensorConfigInfo second;
    auto others = sensors;
    std::erase_if(others, [&](const auto& one) { return one.sensorId == config.sensorId; });
    if (!FirstConfig(others, kFusion, &second)) GTEST_SKIP() << "no second sensor is offered";
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Prepare(client));
    EXPECT_EQ(client.Subscribe(second), kOtherSensor) << second.toString();
    ASSERT_EQ(client.Start(kFusion), kOk);
    EXPECT_EQ(client.Subscribe(second), kMoreThanRuns) << second.toString();
    EXPECT_EQ(client.Unsubscribe(), kOk);
    EXPECT_EQ(client.Subscribe(second), kOk) << second.toString();
}

}  // namespace
}  // namespace conformance
