#include "events/ResultParsers.h"

#include <string>
#include <vector>

#include <cutils/properties.h>
#include <gtest/gtest.h>

#include "tests/events/RawEvent.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::aon {
namespace {

using test::LogRecorder;
using test::RawEvent;
using Tag = AONResultValue::Tag;
using Results = std::vector<AONResult>;

const std::vector<uint8_t>& Bytes(const AONResult& result) {
    return result.value.get<Tag::byteArray>();
}

int Int(const AONResult& result) {
    return result.value.get<Tag::intValue>();
}

TEST(ResultParsers, FillAtMostThirtyFusionItemsWhateverTheCountSays) {
    const struct {
        uint32_t count;
        size_t items;
        bool tooLarge;
    } cases[] = {
            {0, 0, false},           {30, 30, false},    {31, 31, false},
            {13'107, 13'107, false}, {13'108, 30, true}, {0xFFFFFFFF, 30, true},
            {0x0CCCCCCD, 30, true},  // times 20 this is 4 in 32 bits
    };
    RawEvent event;
    for (size_t i = 0; i <= 30; ++i)
        event.PutOutput(199'688 + 80 * i + 4, 1.0F);
    for (const auto& c : cases) {
        event.PutOutput(199'680, c.count);
        LogRecorder log;
        Results results;
        ParseFusionResult(results, event.Output(), 262'144);
        ASSERT_EQ(results.size(), 4U);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[1])), c.count);
        const auto& data = results[3].value.get<Tag::floatArray>();
        ASSERT_EQ(data.size(), 20 * c.items);
        for (size_t i = 0; i < data.size(); ++i) {
            ASSERT_EQ(data[i], i % 20 == 1 && i < 600 ? 1.0F : 0.0F) << c.count << " at " << i;
        }
        const std::string line = "E: AONManagerCallback: fusion count:" + std::to_string(c.count) +
                                 " too large, data cut to 30 items";
        EXPECT_EQ(log.TakeTexts(), std::vector<std::string>(c.tooLarge ? 1 : 0, line));
    }
}

TEST(ResultParsers, CopyThePictureThatItsHeaderAnnouncesAndItsBlockHolds) {
    const struct {
        uint32_t stride, height;
        size_t bytes;
    } cases[] = {
            {640, 480, 460'800},      {1, 1, 1},          {640, 768, 737'280}, {640, 769, 737'316},
            {0xFFFFFFFF, 1, 737'316}, {0x80000000, 2, 0},  // wraps to nothing
            {0x55555556, 1, 1},                            // wraps to 2 halves
            {0x10000, 0x10000, 0},
    };
    RawEvent event;
    event.Put(RawEvent::kImage + 12 + 460'799, uint8_t{0xA2});
    for (const auto& c : cases) {
        event.PutImage(RawEvent::kImage, c.height, c.stride);
        Results results;
        ParseImageData(results, event.get());
        ASSERT_EQ(results.size(), 4U);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[0])), c.stride);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[1])), c.height);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[2])), c.stride);
        const std::vector<uint8_t>& data = Bytes(results[3]);
        ASSERT_EQ(data.size(), c.bytes) << c.stride << "x" << c.height;
        EXPECT_TRUE(data.size() < 460'800 || data[460'799] == 0xA2);
    }
    for (const auto& [stride, height] : {std::pair{1U, 0U}, {0U, 480U}}) {
        event.PutImage(RawEvent::kImage, height, stride);
        Results results;
        ParseImageData(results, event.get());
        EXPECT_TRUE(results.empty());
    }
}

TEST(ResultParsers, TakeThePictureFromTheBlockThatThePropertySelects) {
    RawEvent event;
    event.PutImage(RawEvent::kImage, 2, 2);
    event.Put(RawEvent::kImage + 12, uint8_t{1});
    event.PutImage(RawEvent::kDebugImage, 2, 4);
    event.Put(RawEvent::kDebugImage + 12 + 11, uint8_t{2});
    const std::vector<uint8_t> image{1, 0, 0, 0, 0, 0},
            debugImage{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2};
    for (const std::string value : {"0", "1", "2", "3"}) {
        property_set("vendor.debug.camera.utils.AovDebugBuffer", value.c_str());
        Results results;
        ParseImageData(results, event.get());
        EXPECT_EQ(Bytes(results.back()), value == "2" ? debugImage : image) << value;
    }
}

TEST(ResultParsers, SpellOutTheNumbersOfTheDocumentedPlacesWhenVerbose) {
    property_set("vendor.debug.cameralog.enable", "1");
    RawEvent event;
    event.Put(12, uint32_t{640});
    event.Put(16, uint32_t{480});
    event.PutOutput(199'680, uint32_t{1});
    event.PutOutput(199'684, 1.25F);
    event.PutOutput(199'688, int32_t{-2});
    event.PutOutput(199'688 + 76, 7.75F);
    event.PutOutput(214'784, 1.5F);
    event.PutOutput(214'784 + 52, 14.5F);
    event.PutOutput(209'152, -0.5F);
    event.PutOutput(209'152 + 20, 6.5F);
    event.PutOutput(227'840, uint8_t{7});
    event.PutOutput(227'840 + 9, uint8_t{200});
    LogRecorder log;
    Results results;
    ParseFusionResult(results, event.Output(), 262'144);
    ParseFaceAngleResult(results, event.Output(), 262'144);
    ParseGazeResult(results, event.Output(), 262'144);
    ParseFaceFeatureResult(results, event.Output(), 262'144);
    ParseImageData(results, event.get());

    const auto zeros = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += ",0.000000";
        return text;
    };
    char image[160];
    std::snprintf(image, sizeof(image),
                  "D: AONManagerCallback: image->stride:0, height:0, frame_width:640, "
                  "frame_height:480, output:%p",
                  reinterpret_cast<const void*>(event.get()->imageInfo.pixels));
    EXPECT_EQ(log.TakeTexts(),
              (std::vector<std::string>{
                      "D: AONManagerCallback: fusion->rotateAngle:1.250000",
                      "D: AONManagerCallback: fusion->count:1",
                      "D: AONManagerCallback: fusion->itemLength:20",
                      "D: AONManagerCallback: fusion->data i:0, data[-2.000000" + zeros(18) +
                              ",7.750000]",
                      "D: AONManagerCallback: angle->data[1.500000" + zeros(12) + ",14.500000]",
                      "D: AONManagerCallback: gaze->data[-0.500000" + zeros(4) + ",6.500000]",
                      "D: AONManagerCallback: feature->data[7,0,0,0,0,0,0,0,0,200.....]",
                      image,
              }));
}

}  // namespace
}  // namespace zarvo::aon
