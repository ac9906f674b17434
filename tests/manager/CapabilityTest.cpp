#include <sstream>

#include "tests/manager/ManagerFixture.h"

namespace zarvo::aon {
namespace {

using test::Lines;
using test::ManagerFixture;
using test::ScriptedStream;

using Capabilities = ManagerFixture;

std::string Text(const AonSensorInfo& sensor) {
    std::ostringstream text;
    text << "sensor " << sensor.sensorId << ": " << sensor.reserved0 << " " << sensor.reserved1
         << " " << sensor.supportMode;
    for (const SizeAndSupportRates& size : sensor.sizes) {
        text << ", " << size.width << "x" << size.height << " at";
        for (const int32_t rate : size.rates)
            text << " " << rate;
    }
    return text.str();
}

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
    EXPECT_EQ(Text(sensors[0]), "sensor 0: 0 0 63");
    EXPECT_EQ(Text(sensors[1]), "sensor 4: 0 88 63, 640x480 at 1 3 5, 320x240 at 10");

    mStream.TakeCalls();
    std::vector<AonSensorInfo> again;
    mManager->GetAonSensorInfoList(again);
    EXPECT_EQ(again.size(), 2U);
    EXPECT_TRUE(mStream.TakeCalls().empty());
    EXPECT_TRUE(mLog.TakeTexts().empty());
    EXPECT_TRUE(mManager->CheckServiceTypeSupport(-1));
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

}  // namespace
}  // namespace zarvo::aon
