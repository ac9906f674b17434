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

std::vector<int> Keys(const Results& results) {
    std::vector<int> keys;
    for (const AONResult& result : results)
        keys.push_back(result.key);
    return keys;
}

const std::vector<float>& Floats(const AONResult& result) {
    return result.value.get<Tag::floatArray>();
}

const std::vector<uint8_t>& Bytes(const AONResult& result) {
    return result.value.get<Tag::byteArray>();
}

int Int(const AONResult& result) {
    return result.value.get<Tag::intValue>();
}

TEST(ResultParsers, RefuseARegionThatEndsWithTheirBlock) {
    struct Case {
        void (*parse)(Results&, const uint8_t*, uint64_t);
        uint64_t blockEnd;
        const char* line;
        size_t items;
    };
    const auto fusion = [](Results& results, const uint8_t* output, uint64_t size) {
        ParseFusionResult(results, output, static_cast<uint32_t>(size));
    };
    const Case cases[] = {
            {fusion, 202'088,
             "E: AONManagerCallback: output size is small than aod offset and size", 4},
            {ParseFaceAngleResult, 214'840,
             "E: AONManagerCallback: output size is small than aod offset and size", 1},
            {ParseGazeResult, 209'176,
             "W: AONManagerCallback: output size is small than aod offset and size", 1},
            {ParseFaceFeatureResult, 227'968,
             "W: AONManagerCallback: output size is small than aod offset and size", 1},
    };
    const RawEvent event;
    for (const Case& c : cases) {
        for (const uint64_t size : {uint64_t{0}, c.blockEnd}) {
            LogRecorder log;
            Results results;
            c.parse(results, event.Output(), size);
            EXPECT_TRUE(results.empty()) << c.blockEnd;
            EXPECT_EQ(log.TakeTexts(), std::vector<std::string>{c.line}) << c.blockEnd;
        }
        LogRecorder log;
        Results results;
        c.parse(results, event.Output(), c.blockEnd + 1);
        EXPECT_EQ(results.size(), c.items);
        EXPECT_TRUE(log.TakeTexts().empty());
    }
}

TEST(ResultParsers, TakeTheirNumbersFromTheDocumentedPlaces) {
    RawEvent event;
    event.PutOutput(199'680, uint32_t{2});
    event.PutOutput(199'684, 12.5F);
    event.PutOutput(199'688, int32_t{-1});
    event.PutOutput(199'692, 0.25F);
    event.PutOutput(199'688 + 76, 7.75F);
    event.PutOutput(199'768, int32_t{3});
    event.PutOutput(214'784, 1.5F);
    event.PutOutput(214'784 + 52, 14.5F);
    event.PutOutput(209'152, -0.5F);
    event.PutOutput(209'152 + 20, 6.5F);
    event.PutOutput(227'840, uint8_t{0xF0});
    event.PutOutput(227'840 + 127, uint8_t{0x0F});
    Results results;
    ParseFusionResult(results, event.Output(), 262'144);
    ParseFaceAngleResult(results, event.Output(), 262'144);
    ParseGazeResult(results, event.Output(), 262'144);
    ParseFaceFeatureResult(results, event.Output(), 262'144);

    ASSERT_EQ(Keys(results), (std::vector<int>{100, 101, 102, 103, 200, 300, 400}));
    EXPECT_EQ(results[0].value.get<Tag::floatValue>(), 12.5F);
    EXPECT_EQ(Int(results[1]), 2);
    EXPECT_EQ(Int(results[2]), 20);
    const struct {
        size_t result, length, index;
        float value;
    } places[] = {{3, 40, 0, -1.0F}, {3, 40, 1, 0.25F},  {3, 40, 19, 7.75F}, {3, 40, 20, 3.0F},
                  {4, 14, 0, 1.5F},  {4, 14, 13, 14.5F}, {5, 6, 0, -0.5F},   {5, 6, 5, 6.5F}};
    for (const auto& place : places) {
        ASSERT_EQ(Floats(results[place.result]).size(), place.length);
        EXPECT_EQ(Floats(results[place.result])[place.index], place.value);
    }
    ASSERT_EQ(Bytes(results[6]).size(), 128U);
    EXPECT_EQ(Bytes(results[6]).front(), 0xF0);
    EXPECT_EQ(Bytes(results[6]).back(), 0x0F);
}

TEST(ResultParsers, FillAtMostThirtyFusionItemsWhateverTheCountSays) {
    struct Case {
        uint32_t count;
        size_t floats;
        const char* line;
    };
    const Case cases[] = {
            {0, 0, nullptr},
            {30, 600, nullptr},
            {31, 620, nullptr},
            {13'107, 262'140, nullptr},
            {13'108, 600,
             "E: AONManagerCallback: fusion count:13108 too large, data cut to 30 items"},
            {0xFFFFFFFF, 600,
             "E: AONManagerCallback: fusion count:4294967295 too large, data cut to 30 items"},
            {0x0CCCCCCD, 600,  // times 20 this is 4 in 32 bits
             "E: AONManagerCallback: fusion count:214748365 too large, data cut to 30 items"},
    };
    RawEvent event;
    for (size_t i = 0; i <= 30; ++i)
        event.PutOutput(199'688 + 80 * i + 4, 1.0F);
    for (const Case& c : cases) {
        event.PutOutput(199'680, c.count);
        LogRecorder log;
        Results results;
        ParseFusionResult(results, event.Output(), 262'144);
        ASSERT_EQ(results.size(), 4U);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[1])), c.count);
        const std::vector<float>& data = Floats(results[3]);
        ASSERT_EQ(data.size(), c.floats);
        for (size_t i = 0; i < data.size(); ++i) {
            ASSERT_EQ(data[i], i % 20 == 1 && i < 600 ? 1.0F : 0.0F) << c.count << " at " << i;
        }
        EXPECT_EQ(log.TakeTexts(), c.line == nullptr ? std::vector<std::string>{}
                                                     : std::vector<std::string>{c.line});
    }
}

TEST(ResultParsers, CopyThePictureThatItsHeaderAnnouncesAndItsBlockHolds) {
    struct Case {
        uint32_t stride;
        uint32_t height;
        bool items;
        size_t bytes;
    };
    const Case cases[] = {
            {640, 480, true, 460'800},
            {1, 0, false, 0},
            {0, 480, false, 0},
            {1, 1, true, 1},
            {640, 768, true, 737'280},
            {640, 769, true, 737'316},
            {0xFFFFFFFF, 1, true, 737'316},
            {0x80000000, 2, true, 0},  // wraps to nothing
            {0x55555556, 1, true, 1},  // wraps to 2 halves
            {0x10000, 0x10000, true, 0},
    };
    RawEvent event;
    event.Put(RawEvent::kImage + 12, uint8_t{0xA1});
    event.Put(RawEvent::kImage + 12 + 460'799, uint8_t{0xA2});
    for (const Case& c : cases) {
        event.PutImage(RawEvent::kImage, c.height, c.stride);
        Results results;
        ParseImageData(results, event.get());
        if (!c.items) {
            EXPECT_TRUE(results.empty());
            continue;
        }
        ASSERT_EQ(Keys(results), (std::vector<int>{700, 701, 702, 703}));
        EXPECT_EQ(static_cast<uint32_t>(Int(results[0])), c.stride);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[1])), c.height);
        EXPECT_EQ(static_cast<uint32_t>(Int(results[2])), c.stride);
        const std::vector<uint8_t>& data = Bytes(results[3]);
        ASSERT_EQ(data.size(), c.bytes) << c.stride << "x" << c.height;
        if (!data.empty()) {
            EXPECT_EQ(data[0], 0xA1);
        }
        if (data.size() >= 460'800) {
            EXPECT_EQ(data[460'799], 0xA2);
        }
    }
}

TEST(ResultParsers, TakeThePictureFromTheBlockThatThePropertySelects) {
    RawEvent event;
    event.PutImage(RawEvent::kImage, 2, 2);
    event.Put(RawEvent::kImage + 12, uint8_t{1});
    event.PutImage(RawEvent::kDebugImage, 2, 4);
    event.Put(RawEvent::kDebugImage + 12 + 11, uint8_t{2});
    for (const char* value : {"0", "1", "3"}) {
        property_set("vendor.debug.camera.utils.AovDebugBuffer", value);
        Results results;
        ParseImageData(results, event.get());
        EXPECT_EQ(Bytes(results.back()), (std::vector<uint8_t>{1, 0, 0, 0, 0, 0}));
    }
    property_set("vendor.debug.camera.utils.AovDebugBuffer", "2");
    Results results;
    ParseImageData(results, event.get());
    EXPECT_EQ(Bytes(results.back()).size(), 12U);
    EXPECT_EQ(Bytes(results.back()).back(), 2);
}

TEST(ResultParsers, SpellOutTheirNumbersWhenVerbose) {
    property_set("vendor.debug.cameralog.enable", "1");
    RawEvent event;
    event.Put(12, uint32_t{640});
    event.Put(16, uint32_t{480});
    event.PutOutput(199'680, uint32_t{1});
    event.PutOutput(199'684, 1.25F);
    event.PutOutput(199'688, int32_t{-2});
    event.PutOutput(227'840 + 9, uint8_t{200});
    LogRecorder log;
    Results results;
    ParseFusionResult(results, event.Output(), 262'144);
    ParseFaceAngleResult(results, event.Output(), 262'144);
    ParseGazeResult(results, event.Output(), 262'144);
    ParseFaceFeatureResult(results, event.Output(), 262'144);
    ParseImageData(results, event.get());

    std::string zeros;
    for (int i = 0; i < 5; ++i)
        zeros += ",0.000000";
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
                      "D: AONManagerCallback: fusion->data i:0, data[-2.000000" + zeros + zeros +
                              zeros + ",0.000000,0.000000,0.000000,0.000000]",
                      "D: AONManagerCallback: angle->data[0.000000" + zeros + zeros +
                              ",0.000000,0.000000,0.000000]",
                      "D: AONManagerCallback: gaze->data[0.000000" + zeros + "]",
                      "D: AONManagerCallback: feature->data[0,0,0,0,0,0,0,0,0,200.....]",
                      image,
              }));
}

}  // namespace
}  // namespace zarvo::aon
