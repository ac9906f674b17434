#include "host/text/EventJson.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace zarvo::host {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using Tag = AONResultValue::Tag;

struct NamedKey {
    int32_t key;
    const char* name;
};
constexpr NamedKey kKeys[] = {{AONResult::RESULT_KEY_FRAME_ID, "frame"},
                              {AONResult::RESULT_KEY_FRAME_WIDTH, "width"},
                              {AONResult::RESULT_KEY_FRAME_HEIGHT, "height"},
                              {AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE, "rotation"},
                              {AONResult::RESULT_KEY_FUSION_COUNT, "fusionCount"},
                              {AONResult::RESULT_KEY_FUSION_ITEM_LENGTH, "fusionItemLength"},
                              {AONResult::RESULT_KEY_FUSION_DATA, "fusion"},
                              {AONResult::RESULT_KEY_FACE_ANGLE, "faceAngle"},
                              {AONResult::RESULT_KEY_GAZE, "gaze"},
                              {AONResult::RESULT_KEY_FACE_FEATURE, "faceFeature"},
                              {AONResult::RESULT_KEY_IMAGE_WIDTH, "imageWidth"},
                              {AONResult::RESULT_KEY_IMAGE_HEIGHT, "imageHeight"},
                              {AONResult::RESULT_KEY_IMAGE_STRIDE, "imageStride"}};

/** The same in every locale; what is no number has no form in JSON. */
template <typename T>
std::string NumberText(T value) {
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) return "null";
    }
    char text[64];
    const auto end = std::to_chars(text, text + sizeof(text), value);
    return {text, end.ptr};
}

template <typename T>
std::string ListText(const std::vector<T>& values) {
    std::string text = "[";
    for (const T value : values) {
        if (text.size() > 1) text += ',';
        text += NumberText(value);
    }
    return text + ']';
}

std::string QuotedText(std::string_view value) {
    std::string text = "\"";
    for (const char letter : value) {
        if (letter == '"' || letter == '\\') text += '\\';
        if (static_cast<unsigned char>(letter) >= 0x20) {
            text += letter;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(letter));
        text += escape;
    }
    return text + '"';
}

std::string ValueText(const AONResultValue& value) {
    switch (value.getTag()) {
        case Tag::byteValue:
            return NumberText(value.get<Tag::byteValue>());
        case Tag::byteArray:
            return ListText(value.get<Tag::byteArray>());
        case Tag::intValue:
            return NumberText(value.get<Tag::intValue>());
        case Tag::intArray:
            return ListText(value.get<Tag::intArray>());
        case Tag::floatValue:
            return NumberText(value.get<Tag::floatValue>());
        case Tag::floatArray:
            return ListText(value.get<Tag::floatArray>());
        case Tag::doubleValue:
            return NumberText(value.get<Tag::doubleValue>());
        case Tag::doubleArray:
            return ListText(value.get<Tag::doubleArray>());
        case Tag::boolValue:
            return value.get<Tag::boolValue>() ? "true" : "false";
        case Tag::stringValue:
            return QuotedText(value.get<Tag::stringValue>());
    }
    return "null";
}

std::string NameOf(int32_t key) {
    for (const NamedKey& known : kKeys)
        if (known.key == key) return known.name;
    return "key" + std::to_string(key);
}

}  // namespace

std::string EventJson(const AONCallBackInfo& info) {
    std::string text = "{\"serviceType\":" + std::to_string(info.serviceType);
    for (const AONResult& result : info.results) {
        if (result.key == AONResult::RESULT_KEY_IMAGE_DATA) continue;
        text += ",\"" + NameOf(result.key) + "\":" + ValueText(result.value);
    }
    return text + '}';
}

std::string StateJson(const AONSensorStateInfo& info) {
    return "{\"sensor\":" + std::to_string(info.sensorId) +
           ",\"state\":" + std::to_string(info.state) + '}';
}

}  // namespace zarvo::host
