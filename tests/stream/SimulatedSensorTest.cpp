#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <thread>

#include "host/stream/Lateness.h"
#include "host/stream/RecordWriter.h"
#include "tests/stream/StreamListener.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::host {
namespace {

using Frames = std::vector<int64_t>;
using SimulatedSensorTest = StreamTest;

TEST_F(SimulatedSensorTest, KnowsOfNoSensorThatItDoesNotOffer) {
    int mode = 0;
    EXPECT_EQ(mStream.getSensorMode(mStream.getSensorIdList().back(), &mode), 0);
    EXPECT_NE(mStream.getSensorMode(9, &mode), 0);
    EXPECT_NE(mStream.getSensorMode(0, nullptr), 0);
    EXPECT_TRUE(mStream.getSensorInfo(9).empty());
    mControl.SetSensors({});
    EXPECT_TRUE(mStream.getSensorIdList().empty());
    EXPECT_FALSE(Start(mListener));
}

TEST_F(SimulatedSensorTest, CountsFramesOnFromStartToStart) {
    ASSERT_TRUE(Start(mListener));
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_TRUE(mStream.stop());
    EXPECT_FALSE(mControl.DeliverOne());
    EXPECT_FALSE(mControl.RequestFrame());
    ASSERT_TRUE(Start(mListener));
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_EQ(mListener->Frames(), (Frames{0, 1, 2}));
    mControl.SetSeed(5);
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_EQ(mListener->Frames().back(), 0);
}

TEST_F(SimulatedSensorTest, DeliversTheSceneOfSeedAndCast) {
    RenderConfig expected{
            .seed = 9, .width = 640, .height = 480, .frameRate = 5, .serviceTypes = 3};
    const auto record = std::make_unique<aov_event>();
    size_t compared = 0;
    mListener->inEvent = [&](const aov_event* event) {
        RenderScene(expected, event->frame_id, *record);
        EXPECT_EQ(std::memcmp(record.get(), event, sizeof(aov_event)), 0) << event->frame_id;
        ++compared;
    };
    mControl.SetSeed(9);
    ASSERT_TRUE(Start(mListener));
    for (const Cast cast : {Cast::kStory, Cast::kTwo, Cast::kNobody, Cast::kOne}) {
        mControl.SetCast(expected.cast = cast);
        EXPECT_TRUE(mControl.DeliverOne());
    }
    mControl.Shutdown();
    EXPECT_EQ(compared, 4u);
}

TEST_F(SimulatedSensorTest, KeepsToTheRateItWasStartedWithUntilStoppedWhichIsAtOnce) {
    mControl.SetManualDelivery(false);
    ASSERT_TRUE(Start(mListener, 1));
    EXPECT_FALSE(mControl.DeliverOne());
    EXPECT_TRUE(mStream.stop());
    mControl.Shutdown();
    EXPECT_TRUE(mListener->Frames().empty());
    user_param param = Param(mListener, 3);
    param.mdFrameRate = 30;  // asked for, but not what the sensor is to run at
    mControl.SetJitter(1);   // makes frames late, never early
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(mStream.start(&param));
    EXPECT_TRUE(mListener->WaitForEvents(2));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(666));
}

TEST(SimulatedStream, IsLateBySharesOfThePeriodThatKeepFramesApart) {
    using std::chrono::nanoseconds;
    constexpr nanoseconds kPeriod{33'333'333};
    nanoseconds before{0}, most{0};
    for (uint32_t frame = UINT32_MAX - 500; frame != 500; ++frame) {
        EXPECT_EQ(LatenessOf({7, 0}, frame, kPeriod), nanoseconds(0));
        const nanoseconds late = LatenessOf({7, 1}, frame, kPeriod);
        EXPECT_TRUE(nanoseconds(0) <= late && late <= kPeriod);
        EXPECT_GE(kPeriod + late - before, kPeriod / 4) << frame;
        most = std::max(most, late);
        before = late;
    }
    EXPECT_GE(most, 0.95 * kPeriod);
}

TEST_F(SimulatedSensorTest, RefusesWhatNoStreamCanRun) {
    const std::pair<std::string, void (*)(user_param&)> kCases[] = {
            {"unknown sensor", [](user_param& p) { p.sensorId = 4; }},
            {"unknown sensor", [](user_param& p) { p.sensorId = -1; }},
            {"no callback", [](user_param& p) { p.AovStreamCallback.reset(); }},
            {"impossible size", [](user_param& p) { p.frameWidth = 0; }},
            {"impossible size", [](user_param& p) { p.frameHeight = -480; }},
            {"impossible size", [](user_param& p) { p.frameWidth = 2147483647; }},
            {"impossible rate", [](user_param& p) { p.frameRate = 0; }},
            {"impossible rate", [](user_param& p) { p.frameRate = 121; }},
    };
    test::LogRecorder log("SimulatedSensor");
    for (const auto& [what, change] : kCases) {
        user_param param = Param(mListener);
        change(param);
        EXPECT_FALSE(mStream.start(&param));
        EXPECT_EQ(log.TakeTexts(), std::vector{"W: start refused: " + what});
    }
    EXPECT_FALSE(mStream.start(nullptr));
    EXPECT_FALSE(mStream.stop());
    EXPECT_FALSE(mControl.Running());
    EXPECT_TRUE(Start(mListener));
    EXPECT_FALSE(Start(mListener));
    EXPECT_TRUE(mControl.Running());
}

TEST_F(SimulatedSensorTest, SurvivesStartsAndStopsFromManyThreadsWhileItDelivers) {
    mControl.SetManualDelivery(false);
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < 40; ++i) {
                user_param param = Param(mListener, 120, 64, 48);
                mStream.start(&param);
                t == 0 ? mControl.OpenCamera(i % 3) : mControl.SetSeed(static_cast<uint64_t>(i));
                mStream.stop();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    mControl.Shutdown();
    EXPECT_FALSE(mControl.Running());
    EXPECT_EQ(mListener->Notices().size(), 40u);
}

TEST(SimulatedStream, EndsItsThreadsWhenTheProcessEndsWhileItRuns) {
    const auto listener = std::make_shared<StreamListener>();
    user_param param = Param(listener, 120, 64, 48);
    IAOVStream* stream = IAOVStream::createInstance();
    ASSERT_TRUE(stream != nullptr && stream->start(&param));
    SimulatorControl::Instance().OpenCamera(1);
    EXPECT_TRUE(listener->WaitForEvents(1));
}

}  // namespace
}  // namespace zarvo::host
