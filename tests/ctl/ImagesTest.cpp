#include "host/ctl/Images.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <gtest/gtest.h>

#include <climits>

namespace zarvo::host::ctl {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using Tag = AONResultValue::Tag;

struct Case {
    int32_t width, height, stride;
    size_t bytes;
    std::string error;
};

AONCallBackInfo EventOf(const Case& given) {
    AONCallBackInfo info;
    info.results = {
            {AONResult::RESULT_KEY_FRAME_ID, -1},
            {AONResult::RESULT_KEY_IMAGE_WIDTH, given.width},
            {AONResult::RESULT_KEY_IMAGE_HEIGHT, given.height},
            {AONResult::RESULT_KEY_IMAGE_STRIDE, given.stride},
            {AONResult::RESULT_KEY_IMAGE_DATA, std::vector<uint8_t>(given.bytes, 7)},
    };
    return info;
}

TEST(Images, AreTakenOnlyWhenTheirSizesHold) {
    const Case kCases[] = {
            {4, 2, 6, 12, ""},
            {6, 2, 6, 18, ""},
            {6, 2, 6, 11, "it is cut short"},
            {6, 2, 6, 0, "it is cut short"},
            {6, 2, 0, 12, "its size is wrong"},
            {6, 0, 6, 12, "its size is wrong"},
            {7, 2, 6, 18, "its size is wrong"},
            {-6, 2, 6, 18, "its size is wrong"},
            {6, INT_MAX, 6, 18, "its size is wrong"},
            {16385, 1, 16385, 16385, "its size is wrong"},
            {16384, 16384, 16384, 16384, "it is cut short"},
    };
    for (const Case& given : kCases) {
        const AONCallBackInfo info = EventOf(given);
        EventImage found = FindImage(info);
        EXPECT_EQ(found.error, given.error) << given.width << 'x' << given.height;
        EXPECT_EQ(found.name, "frame-4294967295");
        if (!given.error.empty()) continue;
        EXPECT_EQ(EncodePng(found.image, found.error).size() > 8, true) << found.error;
    }
}

TEST(Images, AreNotTakenFromValuesOfAnotherKind) {
    AONCallBackInfo info = EventOf({4, 2, 4, 12, ""});
    info.results[3].value.set<Tag::floatValue>(4.0F);
    EXPECT_EQ(FindImage(info).error, "its size is wrong");
    info.results[0].value.set<Tag::stringValue>("0");
    EXPECT_EQ(FindImage(info).error, "its event has no number");
    EXPECT_EQ(FindImage(AONCallBackInfo()).error, "its event has no number");
}

}  // namespace
}  // namespace zarvo::host::ctl
