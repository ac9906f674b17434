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

TEST(DebugDump, WritesTheRegionsOfTheServiceTypesInOrder) {
    const struct {
        uint32_t serviceType;  // 0: always
        std::string name;
        int offset;
        uint64_t size;
    } kRegions[] = {
            {0, "aon_input", 0, 82944},
            {0, "aon_output_channel0", 82944, 5184},
            {0, "aon_output_channel1", 88320, 1296},
            {0, "aon_output_channel2", 89856, 324},
            {0, "aon_output_channel3", 90368, 82944},
            {0, "aon_output_channel4", 173312, 20736},
            {0, "aon_output_channel5", 194048, 5184},
            {0, "aon_output_channel6", 199424, 4},
            {0, "aon_eyes_bounding", 202240, 6272},
            {4, "aon_gaze_output_channel0", 208640, 4},
            {4, "aon_gaze_output_channel1", 208896, 2},
            {4, "aon_gaze_output_result", 209152, 24},
            {2, "face_bounding", 209408, 4096},
            {2, "angle_output_channel0", 213504, 1},
            {2, "angle_output_channel1", 213760, 1},
            {2, "angle_output_channel2", 214016, 1},
            {2, "angle_output_channel3", 214272, 1},
            {2, "angle_output_channel4", 214528, 10},
            {2, "angle_result", 214784, 56},
            {8, "face_feature_input", 215040, 12544},
            {8, "face_feature_output_channel0", 227584, 128},
            {8, "face_feature_result", 227840, 128},
    };
    RawEvent event;
    event.Put(8, uint32_t{7});
    event.Put(34'852, uint32_t{0});  // what the event calls valid does not count
    for (const uint32_t serviceType : {0U, 1U, 2U, 4U, 8U, 14U}) {
        std::vector<File> expected, files;
        for (const auto& region : kRegions) {
            if (region.serviceType != 0 && (serviceType & region.serviceType) == 0) continue;
            expected.push_back(
                    {"/data/aon/frame_7_" + region.name + ".dump", region.offset, region.size});
        }
        event.Put(24, serviceType);
        dumpOutput(event.get(),
                   [&](const uint8_t* base, int32_t offset, uint64_t size, const char* path) {
                       EXPECT_EQ(base, event.Output());
                       files.push_back({path, offset, size});
                   });
        EXPECT_EQ(files, expected) << serviceType;
    }
    dumpOutput(nullptr, [](auto...) { FAIL() << "a null event has nothing to dump"; });
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
