#include "events/AONManagerCallback.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <cutils/properties.h>
#include <gtest/gtest.h>

#include "tests/events/RawEvent.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::aon {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using test::LogRecorder;
using test::RawEvent;

class Sink : public IOutEventCallback {
  public:
    void OnAONEvent(AONCallBackInfo& info) override { events.push_back(info); }
    void OnAONSensorEvent(AONSensorStateInfo& /*info*/) override {}

    std::vector<AONCallBackInfo> events;
};

class Conversion : public testing::Test {
  protected:
    Conversion() {
        mEvent.Put(8, uint32_t{77});
        mEvent.Put(12, uint32_t{640});
        mEvent.Put(16, uint32_t{480});
    }

    AONCallBackInfo Convert(uint32_t serviceType) {
        mEvent.Put(24, serviceType);
        mTranslator->onCallback(mEvent.get());
        EXPECT_EQ(mSink->events.size(), 1U);
        AONCallBackInfo info = mSink->events.back();
        mSink->events.clear();
        return info;
    }

    static std::vector<int> Keys(const AONCallBackInfo& info) {
        std::vector<int> keys;
        for (const AONResult& result : info.results)
            keys.push_back(result.key);
        return keys;
    }

    RawEvent mEvent;
    std::shared_ptr<Sink> mSink = std::make_shared<Sink>();
    std::shared_ptr<AONManagerCallback> mTranslator = AONManagerCallback::create(mSink);
};

TEST_F(Conversion, PassesOverBlocksThatAreNotWholeAndOrdersTheRest) {
    const std::vector<int> kFusion{100, 101, 102, 103}, kAndGaze{100, 101, 102, 103, 300},
            kAndAngle{100, 101, 102, 103, 200, 300}, kAll{100, 101, 102, 103, 200, 300, 400};
    const struct {
        uint32_t outputSize;
        std::vector<int> keys;
        std::string refusals;  // the priorities of their lines
    } cases[] = {
            {0, {}, "EEWW"},           {202'088, {}, "EEWW"},     {202'089, kFusion, "EWW"},
            {209'176, kFusion, "EWW"}, {209'177, kAndGaze, "EW"}, {214'840, kAndGaze, "EW"},
            {214'841, kAndAngle, "W"}, {227'968, kAndAngle, "W"}, {227'969, kAll, ""},
            {0xFFFFFFFF, kAll, ""},
    };
    mEvent.PutImage(RawEvent::kImage, 2, 2);
    LogRecorder log;
    for (const auto& c : cases) {
        mEvent.Put(34'852, c.outputSize);
        std::vector<int> keys = c.keys;
        keys.insert(keys.end(), {700, 701, 702, 703, 0, 1, 2});
        EXPECT_EQ(Keys(Convert(15)), keys) << c.outputSize;
        std::vector<std::string> lines;
        for (const char priority : c.refusals) {
            lines.push_back(std::string(1, priority) +
                            ": AONManagerCallback: output size is small than aod offset and size");
        }
        EXPECT_EQ(log.TakeTexts(), lines) << c.outputSize;
    }
}

TEST_F(Conversion, DeliversAnEventWithoutKnownServiceTypes) {
    mEvent.PutImage(RawEvent::kImage, 2, 2);
    LogRecorder log;
    const AONCallBackInfo none = Convert(0);
    EXPECT_EQ(none.serviceType, 0);
    EXPECT_EQ(Keys(none), (std::vector<int>{700, 701, 702, 703, 0, 1, 2}));
    EXPECT_EQ(none.results[4].value.toString(), "AONResultValue{intValue: 77}");
    EXPECT_EQ(log.TakeTexts(),
              std::vector<std::string>{"W: AONManagerCallback: onCallback serviceType == 0"});

    EXPECT_EQ(Keys(Convert(0x80000040)), (std::vector<int>{700, 701, 702, 703, 0, 1, 2}));
    EXPECT_TRUE(log.TakeTexts().empty());
}

TEST_F(Conversion, DumpsOnlyWhenThePropertyIsOneAndNamesEveryFileThatItCannotOpen) {
    LogRecorder log;
    mEvent.Put(8, uint32_t{0xFFFFFFFF});
    for (const char* value : {"0", "2", "-1"}) {
        property_set("zarvo.aon.hal.mtk_dump_apu", value);
        Convert(1);
        EXPECT_TRUE(log.TakeTexts().empty()) << value;
    }
    property_set("zarvo.aon.hal.mtk_dump_apu", "1");
    Convert(1);
    const auto lines = log.TakeTexts();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(std::set(lines.begin(), lines.end()).size(), 9U);
    EXPECT_EQ(lines[0],
              "E: AONManagerCallback: open output file /data/aon/frame_-1_aon_input.dump fail, "
              "file No such file or directory.\n");
}

TEST_F(Conversion, TellsItsStepsWhenVerbose) {
    property_set("vendor.debug.cameralog.enable", "on");
    LogRecorder log;
    Convert(0x40);
    auto lines = log.TakeTexts();
    ASSERT_EQ(lines.size(), 6U);
    lines.erase(lines.begin() + 1);  // the image's line, with an address
    EXPECT_EQ(lines, (std::vector<std::string>{
                             "D: AONManagerCallback: onCallback-> service type:40",
                             "D: AONManagerCallback: onCallback-> callBackInfo.frame_id:77",
                             "D: AONManagerCallback: onCallback-> callBackInfo.frame_width:640",
                             "D: AONManagerCallback: onCallback-> callBackInfo.frame_height:480",
                             "D: AONManagerCallback: onCallback-> callBackInfo.results.size:3",
                     }));
}

TEST_F(Conversion, IgnoresANullEventAndDropsEverythingWithoutAReceiver) {
    LogRecorder log;
    mTranslator->onCallback(nullptr);
    EXPECT_TRUE(mSink->events.empty());
    EXPECT_TRUE(log.TakeTexts().empty());

    const auto deaf = AONManagerCallback::create(nullptr);
    mEvent.Put(24, uint32_t{0});
    deaf->onCallback(mEvent.get());
    deaf->OnServiceStart(1);
    EXPECT_EQ(log.TakeTexts().size(), 1U);  // converted and logged all the same
}

}  // namespace
}  // namespace zarvo::aon
