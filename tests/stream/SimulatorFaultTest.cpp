#include <gtest/gtest.h>

#include <chrono>

#include "tests/stream/StreamListener.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::host {
namespace {

using Frames = std::vector<int64_t>;
using SimulatorFaultTest = StreamTest;

TEST_F(SimulatorFaultTest, FailsTheCallsItWasToldToAndKeepsWhatItWasTold) {
    mControl.callFaults.notifyCameraStatus.FailCalls(1);
    mControl.callFaults.getSensorMode.FailCalls(2);
    int mode = 0;
    EXPECT_EQ(mStream.getSensorMode(0, &mode), 0);
    EXPECT_NE(mStream.getSensorMode(0, &mode), 0);
    EXPECT_FALSE(mStream.notifyCameraStatus({2, 3}, true));
    EXPECT_TRUE(mStream.notifyCameraStatus({}, false));
    EXPECT_EQ(mControl.CameraStatusCalls(),
              (std::vector<CameraStatus>{{{2, 3}, true}, {{}, false}}));
}

TEST(SimulatorFault, IsNotThereWhenToldSoBeforeItsFirstUse) {
    SimulatorControl::Instance().SetNoStream(true);
    EXPECT_EQ(IAOVStream::createInstance(), nullptr);
    SimulatorControl::Instance().SetNoStream(false);
    EXPECT_EQ(IAOVStream::createInstance(), nullptr);
}

TEST_F(SimulatorFaultTest, DeliversRecordsThatLie) {
    using Header = std::vector<uint32_t>;
    Header header;
    mListener->inEvent = [&](const aov_event* event) {
        if (event == nullptr) return header.clear();
        const aov_image_info &image = event->imageInfo, &debug = event->debugImageInfo;
        header = {event->outputSize, image.height, image.stride, debug.height, debug.stride};
    };
    const auto deliver = [&](const RecordFaults& faults) {
        mControl.SetRecordFaults(faults);
        EXPECT_TRUE(mControl.DeliverOne());
        return header;
    };
    ASSERT_TRUE(Start(mListener));
    const Header kTrue{228'096, 480, 640, 480, 640};
    EXPECT_EQ(deliver({}), kTrue);
    RecordFaults faults{17, {}, 0x80000000, 2};
    EXPECT_EQ(deliver(faults), (Header{17, 0x80000000, 2, 0x80000000, 2}));
    faults.nullEvent = true;
    EXPECT_EQ(deliver(faults), Header{});
    EXPECT_EQ(deliver({}), kTrue);
    mControl.SetRecordFaults(faults, 2, 2);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_EQ(mListener->Frames(), (Frames{0, 1, -1, 3, 4, -1, -1, 7}));
}

TEST_F(SimulatorFaultTest, LetsOrderedEventsBeginAfterStop) {
    mControl.SetEventsAfterStop(2);
    ASSERT_TRUE(Start(mListener));
    EXPECT_TRUE(mStream.stop());
    EXPECT_FALSE(mControl.Running());
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_TRUE(mControl.DeliverOne());
    EXPECT_FALSE(mControl.DeliverOne());
    EXPECT_EQ(mListener->Frames(), (Frames{0, 1}));

    mControl.SetManualDelivery(false);
    mControl.SetEventsAfterStop(1000);
    ASSERT_TRUE(Start(mListener, 2));
    EXPECT_TRUE(mStream.stop());
    EXPECT_TRUE(mListener->WaitForEvents(3));
    mControl.Shutdown();
    EXPECT_LT(mListener->Frames().size(), 1000u);
}

TEST_F(SimulatorFaultTest, DeliversAndAnswersWhileItIsSlowToStop) {
    mControl.SetManualDelivery(false);
    size_t meanwhile = 0;
    // A loaded machine may need more than one try to fit an event in.
    for (std::chrono::milliseconds delay(50); meanwhile < 2 && delay < test::kPatience;
         delay *= 2) {
        mControl.SetStopDelay(delay);
        user_param param = Param(mListener, 120, 64, 48);
        ASSERT_TRUE(mStream.start(&param));
        const auto begin = std::chrono::steady_clock::now();
        const size_t before = mListener->Frames().size();
        EXPECT_TRUE(mStream.stop());
        meanwhile = mListener->Frames().size() - before;
        EXPECT_GE(std::chrono::steady_clock::now() - begin, delay);
    }
    EXPECT_GE(meanwhile, 2u);
    EXPECT_FALSE(mControl.Running());
}

}  // namespace
}  // namespace zarvo::host
