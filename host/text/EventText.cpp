#include "host/text/EventText.h"

#include <algorithm>
#include <cmath>
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

/** So many numbers of a face or a result, and so many faces, are shown. */
constexpr size_t kShownNumbers = 5;
constexpr size_t kShownFaces = 3;

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

const AONResult* Find(const AONCallBackInfo& info, int32_t key) {
    const auto found = std::find_if(info.results.begin(), info.results.end(),
                                    [&](const AONResult& result) { return result.key == key; });
    return found == info.results.end() ? nullptr : &*found;
}

/** Three figures or more, which is what an eye can follow; whole numbers as they are. */
std::string NumberText(float value) {
    if (value == 0) return "0";
    const float size = std::abs(value);
    const bool isWhole = std::trunc(value) == value;
    const int decimals = isWhole || size >= 99.95F ? 0 : size >= 9.995F ? 1 : 2;
    char text[64];
    std::snprintf(text, sizeof(text), "%.*f", decimals, static_cast<double>(value));
    return text;
}

std::string FloatsText(std::span<const float> values) {
    std::string text = "[";
    for (const float value : values.first(std::min(values.size(), kShownNumbers))) {
        if (text.size() > 1) text += ' ';
        text += NumberText(value);
    }
    return text + (values.size() > kShownNumbers ? " …]" : "]");
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
        default:  // no result of the service holds it, and a text could hold anything
            return "?";
    }
}

std::string TextOf(const AONCallBackInfo& info, int32_t key) {
    const AONResult* result = Find(info, key);
    return result == nullptr ? "?" : ValueText(result->value);
}

std::optional<int32_t> IntOf(const AONCallBackInfo& info, int32_t key) {
    const AONResult* const result = Find(info, key);
    if (result == nullptr || result->value.getTag() != Tag::intValue) return std::nullopt;
    return result->value.get<Tag::intValue>();
}

/** Face by face. */
std::string FusionText(const AONCallBackInfo& info, const AONResultValue& value) {
    const int32_t length = IntOf(info, AONResult::RESULT_KEY_FUSION_ITEM_LENGTH).value_or(0);
    if (value.getTag() != Tag::floatArray || length <= 0) return ValueText(value);
    std::span<const float> rest(value.get<Tag::floatArray>());
    std::string text;
    for (size_t i = 0; i < kShownFaces && !rest.empty(); ++i) {
        const auto face = rest.first(std::min(rest.size(), static_cast<size_t>(length)));
        text += (i == 0 ? "" : " ") + FloatsText(face);
        rest = rest.subspan(face.size());
    }
    if (!rest.empty()) text += " …";
    return text.empty() ? "[]" : text;
}

std::string ResultText(const AONCallBackInfo& info, const AONResult& result) {
    if (result.key == AONResult::RESULT_KEY_FUSION_DATA) return FusionText(info, result.value);
    if (result.key != AONResult::RESULT_KEY_IMAGE_DATA) return ValueText(result.value);
    return TextOf(info, AONResult::RESULT_KEY_IMAGE_WIDTH) + 'x' +
           TextOf(info, AONResult::RESULT_KEY_IMAGE_HEIGHT) + ", " + ValueText(result.value);
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
    return IntOf(info, AONResult::RESULT_KEY_FUSION_COUNT);
}

std::string EventText(const AONCallBackInfo& info) {
    std::string text = TextOf(info, AONResult::RESULT_KEY_FRAME_ID) + "  " +
                       TextOf(info, AONResult::RESULT_KEY_FRAME_WIDTH) + "x" +
                       TextOf(info, AONResult::RESULT_KEY_FRAME_HEIGHT);
    for (const NamedKey& key : kShownKeys) {
        const AONResult* result = Find(info, key.key);
        if (result != nullptr)
            text += std::string("  ") + key.name + " " + ResultText(info, *result);
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
