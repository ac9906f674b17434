#include <future>
#include <thread>

#include <sys/prctl.h>

#include "tests/manager/ManagerFixture.h"

namespace zarvo::aon {
namespace {

using test::Lines;
using test::ManagerFixture;
using test::ScriptedStream;

class CameraArbitration : public ManagerFixture {
  protected:
    CameraArbitration() { mModules.SetDevices({{5, {2, 3}}, {6, {0}}}); }
};

TEST_F(CameraArbitration, TellsAStopByTheBusyNoticeWhenTheCameraTakesTheSensor) {
    Run(2);
    mManager->NotifyOpen(5);
    ExpectSeen({"notify open 2,3", "stop"}, {"busy 2", "busy 3"},
               {"I: NotifyOpen:5", "I: mOpenDeviceMap add instanceId=5 sensorIds:2,3,",
                "W: stop by sensor suspend", "I: AovStream paused, mOpenedSensorId=2",
                "I: stop sensor success"});
    EXPECT_EQ(mManager->GetServiceTypeStarted(), 0);
}

TEST_F(CameraArbitration, TellsTheStopOfASensorThatTheCameraDoesNotUse) {
    Run(0);
    mManager->NotifyOpen(5);
    EXPECT_EQ(mReceiver->Take(3), (Lines{"busy 2", "busy 3", "stop 0"}));
    EXPECT_EQ(TakeLines().back(),
              "I: Camera use other sensor, this sensor id:0 stop, not support more than one sensor "
              "running");
}

TEST_F(CameraArbitration, RefusesTheSensorUntilTheCameraIsClosed) {
    mManager->NotifyOpen(5);
    mReceiver->Take(2);
    Subscribe(2);
    EXPECT_EQ(mManager->StartService(1), -19);
    ExpectSeen({"notify open 2,3"}, {},
               {"I: sensor 2 is in used, CameraDevice 5 with sensorIds:2,3, is opened."});
    mManager->NotifyClose(5);
    ExpectSeen({"notify close 2,3"}, {"idle 2", "idle 3"},
               {"I: AONManager::NotifyClose:5",
                "I: mOpenDeviceMap erase instanceId=5 sensorIds:2,3,"});
    EXPECT_EQ(mManager->StartService(1), 0);
}

TEST_F(CameraArbitration, ManagesWithoutTheDeviceListAndWithARefusingStream) {
    mModules.SetNoFactory(true);
    mStream.notifyFault.FailAlways();
    Run(0);
    mManager->NotifyOpen(6);
    EXPECT_EQ(mReceiver->Take(1), Lines{"stop 0"});
    const Lines lines = mLog.TakeTexts();
    EXPECT_EQ(lines[1], "W: AONManager: Cannot get HalLogicalDeviceList");
    EXPECT_EQ(lines[2], "I: AONManager: mOpenDeviceMap add instanceId=6 sensorIds:");
    EXPECT_EQ(lines[3], "E: AONManager: Fail to notify AovStream, success=0, sensorIds:");
    EXPECT_EQ(mModules.AskedModules(), std::vector<uint32_t>{0x30001});

    mManager->NotifyClose(6);
    EXPECT_TRUE(mLog.WaitFor("mOpenDeviceMap erase instanceId=6 sensorIds:"));
    const Lines closing = mLog.TakeTexts();
    EXPECT_EQ(closing[1], "W: AONManager: Fail to notify AovStream, success=0, sensorIds:");
    mModules.SetNoFactory(false);
    mModules.SetNoModule(true);
    mManager->NotifyOpen(6);
    EXPECT_TRUE(mLog.WaitFor("Cannot get HalLogicalDeviceList"));
}

TEST_F(CameraArbitration, StopsTheStreamWithoutAReceiverButTellsNobody) {
    Run(0);
    mManager->UnregisterClient();
    mLog.Take();
    mManager->NotifyOpen(6);
    EXPECT_EQ(mManager->GetServiceTypeStarted(), 0);
    EXPECT_EQ(TakeLines().back(), "W: mCallback is null");
    mManager->NotifyClose(6);
    EXPECT_TRUE(mLog.WaitFor("No needs to notify onResume, mCallback=(nil), sensorIds:0,."));
    EXPECT_TRUE(mReceiver->Take().empty());
}

TEST_F(CameraArbitration, TellsNobodyWhenTheReceiverLeavesBeforeTheNotice) {
    // The first notice is held up inside the receiver; the second waits behind it.
    std::promise<void> inside, release;
    mReceiver->inside = [&, once = std::make_shared<std::once_flag>()] {
        std::call_once(*once, [&] {
            inside.set_value();
            release.get_future().wait();
        });
    };
    mManager->NotifyOpen(6);
    inside.get_future().wait();
    std::thread opening([&] { mManager->NotifyOpen(5); });
    ASSERT_TRUE(mLog.WaitFor("mOpenDeviceMap add instanceId=5"));
    mManager->UnregisterClient();
    release.set_value();
    opening.join();
    EXPECT_TRUE(mLog.WaitFor("Cannot get Callback"));
    EXPECT_EQ(mReceiver->Take(1), Lines{"busy 0"});
}

TEST_F(CameraArbitration, KeepsNotificationsInTheOrderOfTheirCalls) {
    Lines expected;
    for (int i = 0; i < 20; ++i) {
        mManager->NotifyOpen(6);
        mManager->NotifyClose(6);
        mManager->NotifyOpen(5);
        mManager->NotifyClose(5);
        for (const char* report : {"busy 0", "idle 0", "busy 2", "busy 3", "idle 2", "idle 3"}) {
            expected.emplace_back(report);
        }
    }
    EXPECT_EQ(mReceiver->Take(expected.size()), expected);
}

TEST(CameraArbitrationAtTheEnd, IsWaitedForByTheManagersDestructionInThreadsOfItsName) {
    auto receiver = std::make_shared<test::RecordingReceiver>();
    auto manager = std::make_shared<AONManager>();
    test::ScriptedModules::Instance().SetDevices({{6, {0}}});
    manager->RegisterClient(receiver);
    std::promise<std::string> inside;
    std::promise<void> release;
    receiver->inside = [&] {
        char name[17] = {};
        prctl(PR_GET_NAME, name);
        inside.set_value(name);
        release.get_future().wait();
    };
    manager->NotifyOpen(6);
    EXPECT_EQ(inside.get_future().get(), "AONManager");
    auto gone = std::async(std::launch::async, [&] { manager.reset(); });
    EXPECT_EQ(gone.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    release.set_value();
    gone.get();
    EXPECT_EQ(receiver->Take(), Lines{"busy 0"});
}

}  // namespace
}  // namespace zarvo::aon
