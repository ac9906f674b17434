#include "host/replay/Replay.h"

#include <gtest/gtest.h>

#include <atomic>

#include "host/replay/RecordedSensor.h"
#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"
#include "tests/clients/RemoteClient.h"
#include "tests/recording/Recorded.h"

namespace zarvo::test {
namespace {

using host::Replay;
using host::SimulatorControl;

constexpr char kOk[] = "No error";

std::shared_ptr<Replay> Play(const std::string& bytes, bool again = false) {
    std::string error;
    auto replay = Replay::Make(std::make_unique<std::istringstream>(bytes), again, error);
    EXPECT_EQ(error, "");
    return replay;
}

/** An event without results but the frame's. */
AONCallBackInfo Event(int32_t frame) {
    AONCallBackInfo info;
    info.results = {{0, frame}, {1, frame}, {2, frame}};
    return info;
}

/** The whole service on the simulated sensor, with a client behind a loopback. */
class ReplayJourney : public testing::Test {
  protected:
    ReplayJourney() { mSimulator.SetManualDelivery(true); }
    ~ReplayJourney() override {
        mService.reset();
        mSimulator.Shutdown();
    }

    void Begin(RemoteClient& client, int types) {
        ASSERT_EQ(client.Register(types), kOk);
        ASSERT_EQ(client.Subscribe(RemoteClient::Config(0, types)), kOk);
        ASSERT_EQ(client.Start(types), kOk);
    }
    SimulatorControl& mSimulator = SimulatorControl::Instance();
    std::shared_ptr<aon::AONService> mService = ndk::SharedRefBase::make<aon::AONService>();
};

TEST_F(ReplayJourney, GoesOnAfterAStopAndIsOverForWhoAsksForMore) {
    Recorded recorded;
    for (int32_t frame = 0; frame < 2; ++frame)
        recorded.writer.Write(milliseconds(0), Event(frame));
    mSimulator.SetReplay(Play(recorded.bytes));
    RemoteClient client(mService);
    Begin(client, 1);
    EXPECT_TRUE(mSimulator.DeliverOne());
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(client.Start(1), kOk);
    EXPECT_TRUE(mSimulator.DeliverOne());
    EXPECT_FALSE(mSimulator.DeliverOne());
    EXPECT_FALSE(mSimulator.RequestFrame());
    EXPECT_EQ(client.callback->TakeEvents().size(), 2U);
    // Cameras are told as ever.
    EXPECT_TRUE(mSimulator.Running());
    client.callback->TakeStates();
    mSimulator.OpenCamera(0);
    EXPECT_TRUE(client.callback->WaitForStates(1));
    EXPECT_FALSE(mSimulator.Running());
}

TEST(Replay, WaitsAsLongAsWasRecordedSinceTheEventOrStartBefore) {
    Recorded recorded;
    recorded.writer.Write(milliseconds(3), State(AONSensorStateInfo::SENSOR_STATE_STARTED));
    recorded.writer.Write(milliseconds(103), Event(0));
    recorded.writer.Write(milliseconds(123), Event(1));
    recorded.writer.Write(milliseconds(150), State(AONSensorStateInfo::SENSOR_STATE_BUSY));
    recorded.writer.Write(milliseconds(900), State(AONSensorStateInfo::SENSOR_STATE_STARTED));
    recorded.writer.Write(milliseconds(940), Event(2));
    const auto replay = Play(recorded.bytes, true);
    const auto record = std::make_unique<aov_event>();
    constexpr int kDelays[] = {100, 20, 40, 100, 20};
    for (uint64_t i = 0; i < std::size(kDelays); ++i) {
        EXPECT_EQ(replay->NextDelay(), milliseconds(kDelays[i])) << i;
        // What a stopped run did not deliver is still the next one.
        EXPECT_EQ(replay->Write(*record), i);
        EXPECT_EQ(replay->Write(*record), i);
        EXPECT_EQ(record->frame_id, i % 3);
        EXPECT_TRUE(replay->Claim(i));
        EXPECT_FALSE(replay->Claim(i));
    }
}

TEST(Replay, IsRefusedWhenDamagedAndEndsWhenThereIsNothingToRepeat) {
    Recorded recorded;
    recorded.writer.Write(milliseconds(0), Event(0));
    const size_t offset = recorded.bytes.size();
    AONCallBackInfo impossible = Event(1);
    impossible.results.pop_back();
    recorded.writer.Write(milliseconds(1), impossible);
    std::string error;
    EXPECT_EQ(Replay::Make(std::make_unique<std::istringstream>(recorded.bytes), false, error),
              nullptr);
    EXPECT_EQ(error,
              "event 2, at byte " + std::to_string(offset) + ": result 2 is missing in its place");
    EXPECT_EQ(Play(Recorded().bytes, true)->NextDelay(), std::nullopt) << "nothing, for ever";
    recorded.bytes[offset] ^= 1;
    EXPECT_EQ(Replay::Make(std::make_unique<std::istringstream>(recorded.bytes), false, error),
              nullptr);
}

TEST(Replay, OffersWhatTheRecordedClientsSubscribed) {
    std::vector<host::SensorDescription> sensors;
    for (const auto& [sensorId, width, fps] :
         {std::array{1, 4, 5}, {1, 4, 5}, {1, 4, 7}, {1, 8, 5}, {2, 4, 5}}) {
        SensorConfigInfo config;
        config.sensorId = sensorId;
        config.frameWidth = width;
        config.fps = fps;
        host::OfferConfig(config, sensors);
    }
    std::string offered;
    for (const auto& sensor : sensors) {
        offered += " sensor " + std::to_string(sensor.id);
        for (const auto& size : sensor.sizes) {
            offered += " width " + std::to_string(size.width);
            for (const int rate : size.rates)
                offered += " " + std::to_string(rate);
        }
    }
    EXPECT_EQ(offered, " sensor 1 width 4 5 7 width 8 5 sensor 2 width 4 5");
}

/** A disk that does not answer until it is told to. */
struct SlowSource : host::RecordSource {
    std::optional<std::chrono::nanoseconds> NextDelay() override {
        isAsked = true;
        isAsked.notify_all();
        answers.wait(false);
        return std::nullopt;
    }
    std::optional<uint64_t> Write(aov_event&) override { return std::nullopt; }
    bool Claim(uint64_t) override { return false; }

    std::atomic<bool> isAsked{false}, answers{false};
};

TEST_F(ReplayJourney, StopsAndStartsWhileADiskIsSlow) {
    const auto slow = std::make_shared<SlowSource>();
    mSimulator.SetManualDelivery(false);
    mSimulator.SetReplay(slow);
    RemoteClient client(mService);
    Begin(client, 1);
    slow->isAsked.wait(false);
    EXPECT_EQ(client.Stop(1), kOk);
    EXPECT_EQ(client.Start(1), kOk);
    EXPECT_EQ(client.Stop(1), kOk);
    slow->answers = true;
    slow->answers.notify_all();
}

}  // namespace
}  // namespace zarvo::test
