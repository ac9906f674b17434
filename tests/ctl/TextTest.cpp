#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/text/EventJson.h"
#include "host/text/EventText.h"

namespace zarvo::host {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using Tag = AONResultValue::Tag;

TEST(EventJson, StaysOneValidLineWhateverTheServiceSends) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    AONCallBackInfo info;
    info.results = {
            {AONResult::RESULT_KEY_GAZE, std::vector<float>{1.5F, NAN, kInfinity, -kInfinity}},
            {-7, std::nan("")},
            {900, std::string("a\"b\\c\n\x01\u00e9")},
            {AONResult::RESULT_KEY_FACE_FEATURE, std::vector<uint8_t>{0, 255}},
            {901, true},
            {902, std::vector<int32_t>{}},
            {AONResult::RESULT_KEY_IMAGE_DATA, std::vector<uint8_t>(9)},
    };
    EXPECT_EQ(
            EventJson(info),
            R"({"serviceType":0,"gaze":[1.5,null,null,null],"key-7":null,)"
            R"("key900":"a\"b\\c\u000a\u0001é","faceFeature":[0,255],"key901":true,"key902":[]})");
}

TEST(EventText, ShowsFaceByFaceAndNeverATextOfTheService) {
    std::vector<float> faces(5 * 20, 0.25F);
    faces[0] = 7;
    faces[1] = 262.54F;
    AONCallBackInfo info;
    info.results = {
            {AONResult::RESULT_KEY_FUSION_ITEM_LENGTH, 20},
            {AONResult::RESULT_KEY_FUSION_DATA, faces},
            {AONResult::RESULT_KEY_GAZE, std::string("\n\x1b[2J")},
            {AONResult::RESULT_KEY_FRAME_ID, 12},
    };
    const std::string other = "[0.25 0.25 0.25 0.25 0.25 …]";
    EXPECT_EQ(EventText(info),
              "12  ?x?  fusion [7 263 0.25 0.25 0.25 …] " + other + " " + other + " …  gaze ?");
    info.results[0].value.set<Tag::intValue>(-1);
    EXPECT_EQ(EventText(info), "12  ?x?  fusion [7 263 0.25 0.25 0.25 …]  gaze ?");
    info.results[0].value.set<Tag::intValue>(INT32_MAX);
    EXPECT_EQ(EventText(info), "12  ?x?  fusion [7 263 0.25 0.25 0.25 …]  gaze ?");
}

}  // namespace
}  // namespace zarvo::host
