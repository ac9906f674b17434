#include <gtest/gtest.h>

#include <future>

#include "host/stream/CameraDevices.h"
#include "tests/stream/StreamListener.h"

namespace zarvo::host {
namespace {

using Notices = std::vector<std::string>;
using CameraNoticeTest = StreamTest;

TEST_F(CameraNoticeTest, ComeInOrderOnAThreadOfTheirOwnAlsoWhileAnEventIsHeldUp) {
    std::promise<void> release;
    mListener->inEvent = [held = release.get_future().share()](auto*) { held.wait(); };
    ASSERT_TRUE(Start(mListener));
    ASSERT_TRUE(mControl.RequestFrame());
    ASSERT_TRUE(mListener->WaitForEvents(1));
    mControl.OpenCamera(5);
    mControl.OpenCamera(1);
    mControl.CloseCamera(5);
    mControl.WaitForCameraNotices();
    EXPECT_TRUE(mStream.stop());
    mControl.CloseCamera(1);
    mControl.WaitForCameraNotices();
    EXPECT_EQ(mListener->Notices(), (Notices{"open 5", "open 1", "close 5", "close 1"}));
    const std::vector<std::thread::id> threads = mListener->NoticeThreads();
    EXPECT_EQ(threads, std::vector<std::thread::id>(4, threads.front()));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    release.set_value();
}

TEST_F(CameraNoticeTest, TellANewCallbackOnceWhatIsOpen) {
    mControl.OpenCamera(1);
    mControl.OpenCamera(2);
    mControl.CloseCamera(1);
    ASSERT_TRUE(Start(mListener));
    EXPECT_TRUE(mStream.stop());
    ASSERT_TRUE(Start(mListener));
    mControl.WaitForCameraNotices();
    EXPECT_EQ(mListener->Notices(), Notices{"open 2"});
}

TEST_F(CameraNoticeTest, AreDroppedOnceNobodyHoldsTheCallbackWhichTheStreamDoesUntilItStops) {
    auto listener = std::make_shared<StreamListener>();
    const std::weak_ptr<StreamListener> watch = listener;
    ASSERT_TRUE(Start(listener));
    listener.reset();
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_FALSE(watch.expired());
    mControl.Shutdown();
    EXPECT_TRUE(watch.expired());
    mControl.OpenCamera(1);
    mControl.WaitForCameraNotices();
}

TEST_F(CameraNoticeTest, ComeOneAfterAnotherAlsoWhenOneOrdersAnotherDuringShutdown) {
    mListener->inNotice = [this] {
        if (mListener->Notices().back() == "open 7") mControl.OpenCamera(8);
    };
    ASSERT_TRUE(Start(mListener));
    // Only the shutdown ends the storm, so what follows is told while it waits.
    mControl.StormCamera(2, UINT32_MAX);
    mControl.OpenCamera(7);
    std::thread other([this] { mControl.Shutdown(); });
    mControl.Shutdown();
    EXPECT_EQ(mListener->Notices().back(), "open 8");
    const std::vector<std::thread::id> threads = mListener->NoticeThreads();
    EXPECT_EQ(threads.front(), threads.back());
    other.join();
    mControl.CloseCamera(7);
    mControl.CloseCamera(8);
    mControl.WaitForCameraNotices();
    EXPECT_EQ(mListener->Notices().back(), "close 8");
}

TEST_F(CameraNoticeTest, ComeInAStormThatEndsClosedAndThatShutdownCutsShort) {
    ASSERT_TRUE(Start(mListener));
    mControl.StormCamera(2, 3);
    mControl.OpenCamera(1);
    mControl.WaitForCameraNotices();
    Notices expected;
    for (int cycle = 0; cycle < 3; ++cycle)
        expected.insert(expected.end(), {"open 2", "close 2"});
    expected.push_back("open 1");
    EXPECT_EQ(mListener->Notices(), expected);
    mControl.CloseCamera(1);
    mControl.StormCamera(2, UINT32_MAX);
    mControl.Shutdown();
    EXPECT_EQ(mListener->Notices().back().substr(0, 5), "close");
    const auto newcomer = std::make_shared<StreamListener>();
    ASSERT_TRUE(Start(newcomer));
    mControl.WaitForCameraNotices();
    EXPECT_EQ(newcomer->Notices(), Notices{});
}

TEST(ModuleHelper, GivesTheSensorsBehindEachDevice) {
    EXPECT_EQ(getMtkcamModuleFactory(0x30000), nullptr);
    const MtkcamModuleFactory factory = getMtkcamModuleFactory(0x30001);
    ASSERT_NE(factory, nullptr);
    auto* const list = static_cast<HalLogicalDeviceList*>(factory());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->getSensorIdsOfDevice(5), (std::vector<int>{2, 3}));
    EXPECT_TRUE(list->getSensorIdsOfDevice(6).empty());
    CameraDevices::Instance().SetDevices({{6, {1, 0}}});
    EXPECT_EQ(list->getSensorIdsOfDevice(6), (std::vector<int>{1, 0}));
}

}  // namespace
}  // namespace zarvo::host
