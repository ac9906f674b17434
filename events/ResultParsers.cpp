#include "events/ResultParsers.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>

#include "events/OutputLayout.h"
#include "platform/Log.h"
#include "platform/Properties.h"

namespace zarvo::aon {

using layout::FusionBlock;
using layout::FusionItem;

namespace {

constexpr char kWho[] = "AONManagerCallback";
constexpr char kTooSmall[] = "output size is small than aod offset and size";

/** The floats of more items than this would take over 1 MiB. */
constexpr uint32_t kMaxReportedItems = 13'107;
constexpr size_t kLoggedFeatureBytes = 10;

template <typename Numbers>
std::string Join(const Numbers& values) {
    std::string text;
    for (const auto value : values) {
        if (!text.empty()) text += ',';
        text += std::to_string(value);
    }
    return text;
}

std::vector<float> CopyFloats(const uint8_t* output, const layout::Region& region) {
    std::vector<float> values(region.size / sizeof(float));
    std::memcpy(values.data(), output + region.offset, region.size);
    return values;
}

void FillItem(std::span<float> data, const FusionItem& item) {
    data[0] = static_cast<float>(item.first);
    std::copy(std::begin(item.rest), std::end(item.rest), data.begin() + 1);
}

size_t ItemsOf(uint32_t count) {
    if (count <= kMaxReportedItems) return count;
    AON_LOGE(kWho, "fusion count:%u too large, data cut to %zu items", count,
             FusionBlock::kMaxItems);
    return FusionBlock::kMaxItems;
}

std::vector<float> FusionData(const FusionBlock& block) {
    std::vector<float> data(ItemsOf(block.count) * FusionItem::kLength);
    const size_t filled = std::min<size_t>(block.count, FusionBlock::kMaxItems);
    for (size_t i = 0; i < filled; ++i) {
        const auto item = std::span(data).subspan(i * FusionItem::kLength, FusionItem::kLength);
        FillItem(item, block.items[i]);
        if (properties::VerboseLog()) {
            AON_LOGD(kWho, "fusion->data i:%d, data[%s]", static_cast<int>(i), Join(item).c_str());
        }
    }
    return data;
}

/** Copies of the block what it says is valid, which is seldom much. */
void CopyBlock(const uint8_t* from, FusionBlock* block) {
    constexpr size_t kItems = offsetof(FusionBlock, items);
    std::memcpy(block, from, kItems);
    const size_t valid = std::min<size_t>(block->count, FusionBlock::kMaxItems);
    std::memcpy(block->items, from + kItems, valid * sizeof(FusionItem));
}

/** The bytes of the picture that its header announces and its block holds. */
std::span<const uint8_t> Pixels(const aov_image_info& image) {
    // The product wraps in 32 bits, as the stream's own arithmetic does.
    const uint32_t bytes = image.stride * image.height * 3 / 2;
    return std::span(image.pixels).first(std::min<size_t>(bytes, aov_image_info::kPixelCapacity));
}

}  // namespace

void ParseFusionResult(std::vector<AONResult>& results, const uint8_t* output, uint32_t size) {
    if (size <= layout::kFusion.End()) {
        AON_LOGE(kWho, "%s", kTooSmall);
        return;
    }
    FusionBlock block;
    CopyBlock(output + layout::kFusion.offset, &block);

    AppendResult<AONResultValue::Tag::floatValue>(
            results, AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE, block.rotateAngle);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "fusion->rotateAngle:%f", static_cast<double>(block.rotateAngle));
    }
    const auto count = static_cast<int32_t>(block.count);
    AppendInt(results, AONResult::RESULT_KEY_FUSION_COUNT, count);
    if (properties::VerboseLog()) AON_LOGD(kWho, "fusion->count:%d", count);

    constexpr int32_t kItemLength = FusionItem::kLength;
    AppendInt(results, AONResult::RESULT_KEY_FUSION_ITEM_LENGTH, kItemLength);
    if (properties::VerboseLog()) AON_LOGD(kWho, "fusion->itemLength:%d", kItemLength);

    AppendResult<AONResultValue::Tag::floatArray>(results, AONResult::RESULT_KEY_FUSION_DATA,
                                                  FusionData(block));
}

void ParseFaceAngleResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size) {
    if (size <= layout::kFaceAngleResult.End()) {
        AON_LOGE(kWho, "%s", kTooSmall);
        return;
    }
    std::vector<float> angles = CopyFloats(output, layout::kFaceAngleResult);
    if (properties::VerboseLog()) AON_LOGD(kWho, "angle->data[%s]", Join(angles).c_str());
    AppendResult<AONResultValue::Tag::floatArray>(results, AONResult::RESULT_KEY_FACE_ANGLE,
                                                  std::move(angles));
}

void ParseGazeResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size) {
    if (size <= layout::kGazeResult.End()) {
        AON_LOGW(kWho, "%s", kTooSmall);
        return;
    }
    std::vector<float> gaze = CopyFloats(output, layout::kGazeResult);
    if (properties::VerboseLog()) AON_LOGD(kWho, "gaze->data[%s]", Join(gaze).c_str());
    AppendResult<AONResultValue::Tag::floatArray>(results, AONResult::RESULT_KEY_GAZE,
                                                  std::move(gaze));
}

void ParseFaceFeatureResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size) {
    if (size <= layout::kFaceFeatureResult.End()) {
        AON_LOGW(kWho, "%s", kTooSmall);
        return;
    }
    const std::span feature(output + layout::kFaceFeatureResult.offset,
                            layout::kFaceFeatureResult.size);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "feature->data[%s.....]", Join(feature.first(kLoggedFeatureBytes)).c_str());
    }
    AppendBytes(results, AONResult::RESULT_KEY_FACE_FEATURE, feature);
}

void ParseImageData(std::vector<AONResult>& results, const aov_event* event) {
    const aov_image_info& image =
            properties::AovDebugBuffer() == 2 ? event->debugImageInfo : event->imageInfo;
    const auto stride = static_cast<int32_t>(image.stride);
    const auto height = static_cast<int32_t>(image.height);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "image->stride:%d, height:%d, frame_width:%d, frame_height:%d, output:%p",
                 stride, height, static_cast<int32_t>(event->frame_width),
                 static_cast<int32_t>(event->frame_height), static_cast<const void*>(image.pixels));
    }
    if (stride == 0 || height == 0) return;

    // The row pitch stands for the width, too: the stream tells no other.
    AppendInt(results, AONResult::RESULT_KEY_IMAGE_WIDTH, stride);
    AppendInt(results, AONResult::RESULT_KEY_IMAGE_HEIGHT, height);
    AppendInt(results, AONResult::RESULT_KEY_IMAGE_STRIDE, stride);
    AppendBytes(results, AONResult::RESULT_KEY_IMAGE_DATA, Pixels(image));
}

}  // namespace zarvo::aon
