#include "events/DebugDump.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "events/OutputLayout.h"
#include "platform/Log.h"
#include "platform/Properties.h"

namespace zarvo::aon {

using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

namespace {

constexpr char kWho[] = "AONManagerCallback";
constexpr size_t kPathSize = 80;
constexpr uint32_t kAlways = 0;

/** A file of the dump, written when the event has the service type. */
struct DumpFile {
    uint32_t serviceType;
    const char* name;
    layout::Region region;
};

// The fusion block and the images have no file.
constexpr DumpFile kDumpFiles[] = {
        {kAlways, "aon_input", layout::kDetectorInput},
        {kAlways, "aon_output_channel0", layout::kOutputChannel0},
        {kAlways, "aon_output_channel1", layout::kOutputChannel1},
        {kAlways, "aon_output_channel2", layout::kOutputChannel2},
        {kAlways, "aon_output_channel3", layout::kOutputChannel3},
        {kAlways, "aon_output_channel4", layout::kOutputChannel4},
        {kAlways, "aon_output_channel5", layout::kOutputChannel5},
        {kAlways, "aon_output_channel6", layout::kOutputChannel6},
        {kAlways, "aon_eyes_bounding", layout::kEyesBounding},
        {IAONService::SERVICE_TYPE_GAZE, "aon_gaze_output_channel0", layout::kGazeChannel0},
        {IAONService::SERVICE_TYPE_GAZE, "aon_gaze_output_channel1", layout::kGazeChannel1},
        {IAONService::SERVICE_TYPE_GAZE, "aon_gaze_output_result", layout::kGazeResult},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "face_bounding", layout::kFaceBounding},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_output_channel0", layout::kFaceAngleChannel0},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_output_channel1", layout::kFaceAngleChannel1},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_output_channel2", layout::kFaceAngleChannel2},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_output_channel3", layout::kFaceAngleChannel3},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_output_channel4", layout::kFaceAngleChannel4},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, "angle_result", layout::kFaceAngleResult},
        {IAONService::SERVICE_TYPE_FACE_FEATURE, "face_feature_input", layout::kFaceFeatureInput},
        {IAONService::SERVICE_TYPE_FACE_FEATURE, "face_feature_output_channel0",
         layout::kFaceFeatureChannel0},
        {IAONService::SERVICE_TYPE_FACE_FEATURE, "face_feature_result", layout::kFaceFeatureResult},
};

bool IsWanted(const DumpFile& file, uint32_t serviceType) {
    return file.serviceType == kAlways || (file.serviceType & serviceType) != 0;
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

void dumpOutput(const aov_event* event) {
    dumpOutput(event, writeByteToFile);
}

void dumpOutput(const aov_event* event, const RegionWriter& write) {
    if (event == nullptr) return;
    const uint32_t serviceType = event->serviceType;
    for (const DumpFile& file : kDumpFiles) {
        if (!IsWanted(file, serviceType)) continue;
        char path[kPathSize];
        std::snprintf(path, sizeof(path), "/data/aon/frame_%d_%s.dump",
                      static_cast<int>(event->frame_id), file.name);
        write(event->output, static_cast<int32_t>(file.region.offset), file.region.size, path);
    }
}

void writeByteToFile(const uint8_t* base, int32_t offset, uint64_t size, const char* path) {
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "wb+"));
    if (file == nullptr) {
        AON_LOGE(kWho, "open output file %s fail, file %s.\n", path, std::strerror(errno));
        return;
    }
    if (properties::VerboseLog()) AON_LOGD(kWho, "dump aon output in %s file.\n", path);
    std::fwrite(base + offset, 1, size, file.get());
}

}  // namespace zarvo::aon
