#include <cutils/properties.h>

#include "tests/manager/ManagerFixture.h"

namespace zarvo::aon {
namespace {

using test::Lines;
using test::ManagerFixture;
using test::ScriptedStream;

class StreamControl : public ManagerFixture {
  protected:
    std::string CallbackLine(int debugMode = 0) const {
        char line[96];
        std::snprintf(line, sizeof(line), "I: debug_mode=%d, AovStreamCallback=%p", debugMode,
                      static_cast<void*>(mManager.get()));
        return line;
    }
};

TEST_F(StreamControl, StartsAndStopsTheStreamAndReportsBoth) {
    Subscribe(2);
    EXPECT_EQ(mManager->StartService(3), 0);
    EXPECT_EQ(mStream.Callback(), mManager);
    ExpectSeen({"start 2"}, {"start 2"},
               {CallbackLine(), "I: start sensor->id:2, t:3, w:640, h:480, f:10",
                "I: start sensor success:3"});
    EXPECT_EQ(mManager->StopService(), 0);
    ExpectSeen({"stop"}, {"stop 2"}, {"I: stop sensor success"});
    EXPECT_EQ(mManager->StopService(), 0);
    ExpectSeen({}, {}, {"W: AovStream is not started."});
    EXPECT_EQ(mManager.use_count(), 1) << "the manager is held by nobody once it is stopped";
}

TEST_F(StreamControl, WritesTheStartRecordAtItsOffsets) {
    property_set("vendor.debug.camera.utils.AovDebugMode", "7");
    property_set("vendor.debug.camera.utils.AovBitDepth.Main", "10");
    property_set("vendor.debug.camera.utils.AovBitDepth.Sub", "9");
    mManager->SubscribeSensor({3, 320, 240, 10, 15, 0});
    mLog.Take();
    ASSERT_EQ(mManager->StartService(5), 0);
    EXPECT_EQ(
            TakeLines(),
            (Lines{"I: open md mode, change 10 fps to 2 --", CallbackLine(1), "W: unknown depth=9",
                   "I: start sensor->id:3, t:5, w:320, h:240, f:2", "I: start sensor success:5"}));
    EXPECT_EQ(mStream.Callback(), mManager);

    const user_param start = mStream.Starts().back();
    const auto* bytes = reinterpret_cast<const uint8_t*>(&start);
    std::map<size_t, int32_t> words;
    for (size_t offset = 0; offset < 200; offset += 4) {
        int32_t word = 0;
        memcpy(&word, bytes + offset, 4);
        if (word != 0) words[offset] = word;
    }
    EXPECT_EQ(words, (std::map<size_t, int32_t>{{4, 3},
                                                {44, 0x2019},
                                                {56, 0x1000},
                                                {60, 2},
                                                {64, 5},
                                                {72, 1},
                                                {144, 10},
                                                {192, 320},
                                                {196, 240}}));
}

TEST_F(StreamControl, KnowsTheBitDepthsOfBothImages) {
    const std::pair<const char*, int32_t> depths[] = {
            {"8", 0x1000}, {"10", 0x2019}, {"12", 0x201E}, {"16", 0x1000}};
    for (const auto& [depth, format] : depths) {
        property_set("vendor.debug.camera.utils.AovBitDepth.Sub", depth);
        Subscribe(1);
        mManager->StartService(1);
        EXPECT_EQ(mStream.Starts().back().subFormat, format);
        EXPECT_EQ(mStream.Starts().back().mainFormat, 0x1000);
        mManager->StopService();
    }
}

TEST_F(StreamControl, ReplacesARunningStreamWithoutReportingItsStop) {
    Run(2, 1);
    Subscribe(3);
    EXPECT_EQ(mManager->StartService(4), 0);
    const std::string running =
            "W: AovStream is running with sensorId 2, please stop() the previous stream before "
            "start() a new one.";
    ExpectSeen({"stop", "start 3"}, {"start 3"},
               {running, "I: stop sensor success", CallbackLine(),
                "I: start sensor->id:3, t:4, w:640, h:480, f:10", "I: start sensor success:4"});
}

TEST_F(StreamControl, TakesAStreamThatWouldNotStopForARunningOne) {
    Run(2);
    mStream.stopFault.FailCalls(1);
    EXPECT_EQ(mManager->StopService(), 0);
    ExpectSeen({"stop"}, {"stop 2"},
               {"E: Failed to uninitialize AovStream.", "I: stop sensor success"});
    EXPECT_EQ(mManager->StartService(1), 0);
    ExpectSeen({}, {"start 2"},
               {CallbackLine(), "I: start sensor->id:2, t:1, w:640, h:480, f:10",
                "W: AovStream is initialized", "I: start sensor success:1"});
}

TEST_F(StreamControl, IsStoppedAgainAfterARefusedStart) {
    Subscribe(2);
    mStream.startFault.FailCalls(1);
    EXPECT_EQ(mManager->StartService(1), -22);
    const std::string failure = "E: Failed to initialize AovStream.";
    ExpectSeen(
            {"start 2"}, {},
            {CallbackLine(), "I: start sensor->id:2, t:1, w:640, h:480, f:10", failure, failure});
    EXPECT_EQ(mManager->GetServiceTypeStarted(), 0);
    EXPECT_EQ(mManager.use_count(), 1);
}

TEST(ManagerWithoutStream, RefusesToStartAndLeavesEverythingElseAsItIs) {
    ScriptedStream::Instance().SetNoStream(true);
    const auto manager = std::make_shared<AONManager>();
    test::LogRecorder log;
    std::vector<AonSensorInfo> sensors(3);
    manager->GetAonSensorInfoList(sensors);
    EXPECT_EQ(sensors.size(), 3U);
    manager->NotifyOpen(6);
    manager->NotifyClose(6);
    EXPECT_EQ(log.TakeTexts(),
              (Lines{"I: AONManager: Init Aon Sensor Info", "E: AONManager: aov stream is null",
                     "I: AONManager: NotifyOpen:6", "I: AONManager: mAovStream is null, return",
                     "I: AONManager: AONManager::NotifyClose:6",
                     "I: AONManager: mAovStream is null, return"}));
    EXPECT_EQ(manager->StartService(1), -22);
    EXPECT_EQ(manager->GetServiceTypeStarted(), 0);
    const Lines lines = log.TakeTexts();
    ASSERT_EQ(lines.size(), 5U);  // delivery mode 0 is md mode
    EXPECT_EQ(lines[3], "E: AONManager: Cannot get AovStream");
    EXPECT_EQ(lines[4], "E: AONManager: Failed to initialize AovStream.");
}

TEST_F(StreamControl, KeepsItsReceiverWhenItIsOfferedNone) {
    EXPECT_EQ(mManager->RegisterClient(nullptr), -22);
    mManager->onCallback(nullptr);
    ExpectSeen({}, {"event -1"}, {"W: register callback is null"});
    EXPECT_EQ(mManager->UnregisterClient(), 0);
    EXPECT_EQ(TakeLines(), Lines{"I: unregister callback success"});
    mManager->onCallback(nullptr);
    EXPECT_EQ(mManager->StartService(1), 0);
    EXPECT_EQ(mManager->StopService(), 0);
    EXPECT_TRUE(mReceiver->Take().empty());
    EXPECT_EQ(mReceiver.use_count(), 1);
}

TEST_F(StreamControl, MayBeCalledFromInsideItsReports) {
    mReceiver->inside = [&] { mManager->GetServiceTypeStarted(); };
    Run(2);
    mManager->onCallback(nullptr);
    mManager->StopService();
    EXPECT_EQ(mReceiver->Take(), (Lines{"event -1", "stop 2"}));
}

}  // namespace
}  // namespace zarvo::aon
