#include "host/text/EventText.h"

#include <algorithm>
#include <cstdio>
#include <span>
#include <vector>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

namespace zarvo::host {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

namespace {

using Tag = AONResultValue::Tag;

/** Of a face: its track id, left and top. Of gaze and angle: all three directions. */
constexpr size_t kShownNumbers = 3;

struct NamedType {
    int32_t type;
    const char* name;
};
constexpr NamedType kTypes[] = {{IAONService::SERVICE_TYPE_FUSION, "fusion"},
                                {IAONService::SERVICE_TYPE_FACE_ANGLE, "face angle"},
                                {IAONService::SERVICE_TYPE_GAZE, "gaze"},
                                {IAONService::SERVICE_TYPE_FACE_FEATURE, "face feature"}};

struct NamedKey {
    int32_t key;
    const char* name;
};
constexpr NamedKey kShownKeys[] = {{AONResult::RESULT_KEY_FUSION_COUNT, "faces"},
                                   {AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE, "rotation"},
                                   {AONResult::RESULT_KEY_FUSION_DATA, "fusion"},
                                   {AONResult::RESULT_KEY_FACE_ANGLE, "angle"},
                                   {AONResult::RESULT_KEY_GAZE, "gaze"},
                                   {AONResult::RESULT_KEY_FACE_FEATURE, "feature"},
                                   {AONResult::RESULT_KEY_IMAGE_DATA, "image"}};

std::string NumberText(float value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.2f", static_cast<double>(value));
    return text;
}

std::string FloatsText(const std::vector<float>& values) {
    std::string text = "[";
    for (const float value : std::span(values).first(std::min(values.size(), kShownNumbers))) {
        text += NumberText(value) + " ";
    }
    return text + "…" + std::to_string(values.size()) + "]";
}

std::string ValueText(const AONResultValue& value) {
    switch (value.getTag()) {
        case Tag::intValue:
            return std::to_string(value.get<Tag::intValue>());
        case Tag::floatValue:
            return NumberText(value.get<Tag::floatValue>());
        case Tag::floatArray:
            return FloatsText(value.get<Tag::floatArray>());
        case Tag::byteArray:
            return std::to_string(value.get<Tag::byteArray>().size()) + " bytes";
        default:
            return value.toString();
    }
}

const AONResult* Find(const AONCallBackInfo& info, int32_t key) {
    const auto found = std::find_if(info.results.begin(), info.results.end(),
                                    [&](const AONResult& result) { return result.key == key; });
    return found == info.results.end() ? nullptr : &*found;
}

std::string TextOf(const AONCallBackInfo& info, int32_t key) {
    const AONResult* result = Find(info, key);
    return result == nullptr ? "?" : ValueText(result->value);
}

}  // namespace

std::string ServiceTypesText(int32_t serviceTypes) {
    std::string text;
    for (const NamedType& type : kTypes) {
        if ((serviceTypes & type.type) == 0) continue;
        if (!text.empty()) text += "+";
        text += type.name;
    }
    return text.empty() ? "none" : text;
}

std::optional<int32_t> FaceCount(const AONCallBackInfo& info) {
    const AONResult* count = Find(info, AONResult::RESULT_KEY_FUSION_COUNT);
    if (count == nullptr || count->value.getTag() != Tag::intValue) return std::nullopt;
    return count->value.get<Tag::intValue>();
}

std::string EventText(const AONCallBackInfo& info) {
    std::string text = TextOf(info, AONResult::RESULT_KEY_FRAME_ID) + "  " +
                       TextOf(info, AONResult::RESULT_KEY_FRAME_WIDTH) + "x" +
                       TextOf(info, AONResult::RESULT_KEY_FRAME_HEIGHT);
    for (const NamedKey& key : kShownKeys) {
        const AONResult* result = Find(info, key.key);
        if (result != nullptr)
            text += std::string("  ") + key.name + " " + ValueText(result->value);
    }
    return text;
}

std::string StateText(const AONSensorStateInfo& info) {
    const std::string sensor = "sensor " + std::to_string(info.sensorId);
    switch (info.state) {
        case AONSensorStateInfo::SENSOR_STATE_IDLE:
            return sensor + " is IDLE: nothing of the always-on stream runs on it";
        case AONSensorStateInfo::SENSOR_STATE_STARTED:
            return sensor + " is STARTED: the always-on stream runs on it";
        case AONSensorStateInfo::SENSOR_STATE_BUSY:
            return sensor + " is BUSY: a camera device uses it";
        default:
            return sensor + " is in the unknown state " + std::to_string(info.state);
    }
}

}  // namespace zarvo::host
