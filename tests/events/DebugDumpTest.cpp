#include "events/DebugDump.h"

#include <cstdio>
#include <fstream>
#include <iterator>
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

struct File {
    std::string path;
    int offset;
    uint64_t size;

    bool operator==(const File&) const = default;
};

const std::vector<File> kAlways = {
        {"/data/aon/frame_7_aon_input.dump", 0, 82944},
        {"/data/aon/frame_7_aon_output_channel0.dump", 82944, 5184},
        {"/data/aon/frame_7_aon_output_channel1.dump", 88320, 1296},
        {"/data/aon/frame_7_aon_output_channel2.dump", 89856, 324},
        {"/data/aon/frame_7_aon_output_channel3.dump", 90368, 82944},
        {"/data/aon/frame_7_aon_output_channel4.dump", 173312, 20736},
        {"/data/aon/frame_7_aon_output_channel5.dump", 194048, 5184},
        {"/data/aon/frame_7_aon_output_channel6.dump", 199424, 4},
        {"/data/aon/frame_7_aon_eyes_bounding.dump", 202240, 6272},
};
const std::vector<File> kGaze = {
        {"/data/aon/frame_7_aon_gaze_output_channel0.dump", 208640, 4},
        {"/data/aon/frame_7_aon_gaze_output_channel1.dump", 208896, 2},
        {"/data/aon/frame_7_aon_gaze_output_result.dump", 209152, 24},
};
const std::vector<File> kFaceAngle = {
        {"/data/aon/frame_7_face_bounding.dump", 209408, 4096},
        {"/data/aon/frame_7_angle_output_channel0.dump", 213504, 1},
        {"/data/aon/frame_7_angle_output_channel1.dump", 213760, 1},
        {"/data/aon/frame_7_angle_output_channel2.dump", 214016, 1},
        {"/data/aon/frame_7_angle_output_channel3.dump", 214272, 1},
        {"/data/aon/frame_7_angle_output_channel4.dump", 214528, 10},
        {"/data/aon/frame_7_angle_result.dump", 214784, 56},
};
const std::vector<File> kFaceFeature = {
        {"/data/aon/frame_7_face_feature_input.dump", 215040, 12544},
        {"/data/aon/frame_7_face_feature_output_channel0.dump", 227584, 128},
        {"/data/aon/frame_7_face_feature_result.dump", 227840, 128},
};

std::vector<File> Joined(const std::vector<std::vector<File>>& parts) {
    std::vector<File> all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(DebugDump, WritesTheRegionsOfTheServiceTypesInOrder) {
    struct Case {
        uint32_t serviceType;
        std::vector<File> files;
    };
    const Case cases[] = {
            {0, kAlways},
            {1, kAlways},
            {2, Joined({kAlways, kFaceAngle})},
            {4, Joined({kAlways, kGaze})},
            {8, Joined({kAlways, kFaceFeature})},
            {14, Joined({kAlways, kGaze, kFaceAngle, kFaceFeature})},
    };
    RawEvent event;
    event.Put(8, uint32_t{7});
    event.Put(34'852, uint32_t{0});  // what the event calls valid does not count
    for (const Case& c : cases) {
        event.Put(24, c.serviceType);
        std::vector<File> files;
        dumpOutput(event.get(),
                   [&](const uint8_t* base, int32_t offset, uint64_t size, const char* path) {
                       EXPECT_EQ(base, event.Output());
                       files.push_back({path, offset, size});
                   });
        EXPECT_EQ(files, c.files) << c.serviceType;
    }
    dumpOutput(nullptr, [](auto...) { FAIL() << "a null event has nothing to dump"; });
}

TEST(DebugDump, NamesEveryFileThatItCannotOpen) {
    RawEvent event;
    event.Put(8, uint32_t{0xFFFFFFFF});
    LogRecorder log;
    dumpOutput(event.get());
    const auto lines = log.TakeTexts();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[0],
              "E: AONManagerCallback: open output file /data/aon/frame_-1_aon_input.dump fail, "
              "file No such file or directory.\n");
}

TEST(DebugDump, ReplacesAFileByTheBytesOfTheRegion) {
    const std::string path = AON_SCRATCH_DIR "/dump_test.bin";
    std::ofstream(path) << "much longer than what comes";
    const uint8_t bytes[] = {1, 2, 3, 4, 5};
    LogRecorder log;
    writeByteToFile(bytes, 0, 5, path.c_str());
    EXPECT_TRUE(log.TakeTexts().empty());
    property_set("vendor.debug.cameralog.enable", "1");
    writeByteToFile(bytes + 3, -2, 3, path.c_str());

    EXPECT_EQ(log.TakeTexts(),
              std::vector<std::string>{"D: AONManagerCallback: dump aon output in " + path +
                                       " file.\n"});
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> read{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(read, (std::vector<char>{2, 3, 4}));
    std::remove(path.c_str());
}

}  // namespace
}  // namespace zarvo::aon
