#include "host/replay/EventRecord.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

#include "host/stream/RecordLayout.h"

namespace zarvo::host {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using layout::Region;
using Tag = AONResultValue::Tag;

constexpr size_t kFloatsOfItem = layout::kFusionItem / sizeof(float);
constexpr size_t kMostItems = (layout::kFusion.size - layout::kFusionHeader) / layout::kFusionItem;
/** Of more items than this the service tells no more than a block holds. */
constexpr uint32_t kMostReportedItems = 13'107;

/** Whether an integer gives this float, and which. */
bool IntegerOf(float number, int32_t* integer) {
    // Also false for what is no number.
    if (!(number >= static_cast<float>(INT_MIN) && number <= static_cast<float>(INT_MAX))) {
        return false;
    }
    *integer = number == static_cast<float>(INT_MAX) ? INT_MAX : static_cast<int32_t>(number);
    return std::bit_cast<uint32_t>(static_cast<float>(*integer)) == std::bit_cast<uint32_t>(number);
}

/** Goes through an event's results in the order in which the service makes them. */
class Writer {
  public:
    Writer(const AONCallBackInfo& event, aov_event& record)
        : mServiceTypes(event.serviceType), mNext(event.results), mRecord(record) {}

    std::string Write() {
        static_assert(std::is_trivially_copyable_v<aov_event>);
        std::memset(&mRecord, 0, sizeof(mRecord));
        mRecord.serviceType = static_cast<uint32_t>(mServiceTypes);
        WriteFusion();
        WriteFloats(IAONService::SERVICE_TYPE_FACE_ANGLE, AONResult::RESULT_KEY_FACE_ANGLE,
                    layout::kAngleResult);
        WriteFloats(IAONService::SERVICE_TYPE_GAZE, AONResult::RESULT_KEY_GAZE,
                    layout::kGazeResult);
        WriteFeature();
        WriteOutputSize();
        WriteImage();
        mRecord.frame_id = TakeNumber(AONResult::RESULT_KEY_FRAME_ID);
        mRecord.frame_width = TakeNumber(AONResult::RESULT_KEY_FRAME_WIDTH);
        mRecord.frame_height = TakeNumber(AONResult::RESULT_KEY_FRAME_HEIGHT);
        if (!mNext.empty()) Fault(mNext.front().key, "is not possible in its place");
        return mFault;
    }

  private:
    void Fault(int32_t key, const std::string& what) {
        if (mFault.empty()) mFault = "result " + std::to_string(key) + " " + what;
    }
    bool IsNext(int32_t key) const { return !mNext.empty() && mNext.front().key == key; }

    /** Whether the results of a service follow, which then are in a region of the output. */
    bool Begins(int32_t serviceType, int32_t key, const Region& region) {
        const bool follows = IsNext(key);
        const bool runs = (mServiceTypes & serviceType) != 0;
        const auto end = static_cast<uint32_t>(region.offset + region.size);
        if (follows && !runs) Fault(key, "does not go with the event's service types");
        if (follows) mNeeded = std::max(mNeeded, end);
        if (!follows && runs) mCut = std::min(mCut, end);
        return follows;
    }
    template <Tag kTag>
    const auto& Take(int32_t key) {
        static const auto* const kNothing = new AONResultValue(AONResultValue::make<kTag>());
        const AONResultValue* value = kNothing;
        if (!IsNext(key)) {
            Fault(key, "is missing in its place");
        } else if (mNext.front().value.getTag() != kTag) {
            Fault(key, "is of another type");
        } else {
            value = &mNext.front().value;
        }
        if (!mNext.empty()) mNext = mNext.subspan(1);
        return value->get<kTag>();
    }
    uint32_t TakeNumber(int32_t key) { return static_cast<uint32_t>(Take<Tag::intValue>(key)); }

    template <typename T>
    void Copy(std::span<const T> values, size_t offset) {
        if (!values.empty()) {
            std::memcpy(mRecord.output + offset, values.data(), values.size_bytes());
        }
    }
    /** A block that holds nothing but these. */
    template <typename T>
    void CopyBlock(int32_t key, const std::vector<T>& values, const Region& region) {
        if (values.size() * sizeof(T) == region.size) return Copy(std::span(values), region.offset);
        Fault(key, "has " + std::to_string(values.size()) + " values, " +
                           std::to_string(region.size / sizeof(T)) + " belong there");
    }

    void WriteFusion() {
        constexpr int32_t kFirst = AONResult::RESULT_KEY_FUSION_ROTATE_ANGLE;
        if (!Begins(IAONService::SERVICE_TYPE_FUSION, kFirst, layout::kFusion)) return;
        const float rotation = Take<Tag::floatValue>(kFirst);
        const uint32_t count = TakeNumber(AONResult::RESULT_KEY_FUSION_COUNT);
        Copy(std::span(&count, 1), layout::kFusion.offset);
        Copy(std::span(&rotation, 1), layout::kFusion.offset + sizeof(count));
        if (TakeNumber(AONResult::RESULT_KEY_FUSION_ITEM_LENGTH) != kFloatsOfItem) {
            Fault(AONResult::RESULT_KEY_FUSION_ITEM_LENGTH, "is not 20");
        }
        WriteItems(count, Take<Tag::floatArray>(AONResult::RESULT_KEY_FUSION_DATA));
    }
    void WriteItems(uint32_t count, std::span<const float> data) {
        constexpr int32_t kKey = AONResult::RESULT_KEY_FUSION_DATA;
        const size_t reported = count <= kMostReportedItems ? count : kMostItems;
        if (data.size() != reported * kFloatsOfItem) {
            return Fault(kKey, "does not have 20 numbers for each item");
        }
        const size_t filled = std::min(reported, kMostItems);
        for (size_t i = 0; i < filled; ++i)
            WriteItem(i, data.subspan(i * kFloatsOfItem, kFloatsOfItem));
        const auto rest = data.subspan(filled * kFloatsOfItem);
        const auto isZero = [](float number) { return std::bit_cast<uint32_t>(number) == 0; };
        if (!std::all_of(rest.begin(), rest.end(), isZero)) Fault(kKey, "has more than 30 items");
    }
    void WriteItem(size_t index, std::span<const float> item) {
        const size_t offset =
                layout::kFusion.offset + layout::kFusionHeader + index * layout::kFusionItem;
        int32_t first = 0;
        if (!IntegerOf(item.front(), &first)) {
            Fault(AONResult::RESULT_KEY_FUSION_DATA, "has an item that begins with no integer");
        }
        Copy(std::span<const int32_t>(&first, 1), offset);
        Copy(item.subspan(1), offset + sizeof(first));
    }
    void WriteFloats(int32_t serviceType, int32_t key, const Region& region) {
        if (Begins(serviceType, key, region)) CopyBlock(key, Take<Tag::floatArray>(key), region);
    }
    void WriteFeature() {
        constexpr int32_t kKey = AONResult::RESULT_KEY_FACE_FEATURE;
        constexpr Region kRegion = layout::kFeatureResult;
        if (Begins(IAONService::SERVICE_TYPE_FACE_FEATURE, kKey, kRegion)) {
            CopyBlock(kKey, Take<Tag::byteArray>(kKey), kRegion);
        }
    }
    /** Results of services that ran are missing when the output ended before them. */
    void WriteOutputSize() {
        mRecord.outputSize = mCut;
        if (mNeeded >= mCut && mFault.empty()) {
            mFault = "results are missing though the output reached beyond them";
        }
    }

    void WriteImage() {
        if (!IsNext(AONResult::RESULT_KEY_IMAGE_WIDTH)) return;
        const uint32_t width = TakeNumber(AONResult::RESULT_KEY_IMAGE_WIDTH);
        const uint32_t height = TakeNumber(AONResult::RESULT_KEY_IMAGE_HEIGHT);
        const uint32_t stride = TakeNumber(AONResult::RESULT_KEY_IMAGE_STRIDE);
        const auto& pixels = Take<Tag::byteArray>(AONResult::RESULT_KEY_IMAGE_DATA);
        // The stream tells but one of the two; the product wraps as the service's does.
        const size_t size =
                std::min<size_t>(stride * height * 3 / 2, aov_image_info::kPixelCapacity);
        if (width != stride || stride == 0 || height == 0 || pixels.size() != size) {
            return Fault(AONResult::RESULT_KEY_IMAGE_DATA, "is no picture of the size it tells");
        }
        for (aov_image_info* image : {&mRecord.imageInfo, &mRecord.debugImageInfo}) {
            image->height = height;
            image->stride = stride;
            std::copy(pixels.begin(), pixels.end(), image->pixels);
        }
    }

    const int32_t mServiceTypes;
    std::span<const AONResult> mNext;
    aov_event& mRecord;
    /** The output reaches beyond the one, and not beyond the other. */
    uint32_t mNeeded = 0;
    uint32_t mCut = layout::kOutputSize;
    std::string mFault;
};

}  // namespace

std::string WriteEventRecord(const AONCallBackInfo& event, aov_event& record) {
    return Writer(event, record).Write();
}

}  // namespace zarvo::host
