#include "tests/manager/ManagerFixture.h"

namespace zarvo::aon {
namespace {

using test::Lines;
using test::ManagerFixture;
using test::ScriptedStream;

using Capabilities = ManagerFixture;

TEST_F(Capabilities, AreAskedOnceAndKept) {
    mStream.SetSensors({{0, {}},
                        {4,
                         {ScriptedStream::Record(640, 480, 77, {1, 3, 5}),
                          ScriptedStream::Record(320, 240, 88, {10})}}});
    mStream.SetMode(4, -5, 0x11);
    std::vector<AonSensorInfo> sensors(3);
    mManager->GetAonSensorInfoList(sensors);

    EXPECT_EQ(mLog.TakeTexts(),
              (Lines{"I: AONManager: Init Aon Sensor Info",
                     "I: AONManager: sensorId:0, sensor info size:0",
                     "I: AONManager: sensorId=0, support mode=0x0",
                     "I: AONManager: sensorId:4, sensor info size:2",
                     "E: AONManager: fail to getSensorMode, status=-5, sensorId=4, mode=0x11",
                     "I: AONManager: sensorId=4, support mode=0x11"}));
    ASSERT_EQ(sensors.size(), 2U);
    EXPECT_EQ(sensors[0].sensorId, 0);
    EXPECT_EQ(sensors[0].reserved1, 0);
    EXPECT_EQ(sensors[0].supportMode, 0x3F);
    EXPECT_TRUE(sensors[0].sizes.empty());
    EXPECT_EQ(sensors[1].sensorId, 4);
    EXPECT_EQ(sensors[1].reserved0, 0);
    EXPECT_EQ(sensors[1].reserved1, 88);
    EXPECT_EQ(sensors[1].supportMode, 0x3F);
    ASSERT_EQ(sensors[1].sizes.size(), 2U);
    EXPECT_EQ(sensors[1].sizes[0].width, 640);
    EXPECT_EQ(sensors[1].sizes[0].height, 480);
    EXPECT_EQ(sensors[1].sizes[0].rates, (std::vector<int32_t>{1, 3, 5}));
    EXPECT_EQ(sensors[1].sizes[1].rates, (std::vector<int32_t>{10}));

    mStream.TakeCalls();
    std::vector<AonSensorInfo> again;
    mManager->GetAonSensorInfoList(again);
    EXPECT_EQ(again.size(), 2U);
    EXPECT_TRUE(mStream.TakeCalls().empty());
    EXPECT_TRUE(mLog.TakeTexts().empty());
}

TEST_F(Capabilities, AreAskedAgainWhileThereAreNone) {
    mStream.SetSensors({});
    std::vector<AonSensorInfo> sensors(3);
    mManager->GetAonSensorInfoList(sensors);
    EXPECT_TRUE(sensors.empty());
    mStream.SetSensors({{1, {}}});
    mManager->GetAonSensorInfoList(sensors);
    EXPECT_EQ(sensors.size(), 1U);
}

TEST(CapabilitiesWithoutStream, LeaveTheListAsItIs) {
    ScriptedStream::Instance().SetNoStream(true);
    const auto manager = std::make_shared<AONManager>();
    test::LogRecorder log;
    std::vector<AonSensorInfo> sensors(3);
    manager->GetAonSensorInfoList(sensors);
    EXPECT_EQ(sensors.size(), 3U);
    EXPECT_EQ(log.TakeTexts(),
              (Lines{"I: AONManager: Init Aon Sensor Info", "E: AONManager: aov stream is null"}));
}

}  // namespace
}  // namespace zarvo::aon
