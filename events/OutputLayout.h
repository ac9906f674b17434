#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/mtkcam/aov_event.h"

/** Where things lie inside the output region of an aov_event. Offsets are from its start. */
namespace zarvo::aon::layout {

struct Region {
    uint32_t offset;
    uint32_t size;

    constexpr uint32_t End() const { return offset + size; }
};

inline constexpr Region kDetectorInput{0, 82'944};
inline constexpr Region kOutputChannel0{82'944, 5'184};
inline constexpr Region kOutputChannel1{88'320, 1'296};
inline constexpr Region kOutputChannel2{89'856, 324};
inline constexpr Region kOutputChannel3{90'368, 82'944};
inline constexpr Region kOutputChannel4{173'312, 20'736};
inline constexpr Region kOutputChannel5{194'048, 5'184};
inline constexpr Region kOutputChannel6{199'424, 4};
inline constexpr Region kFusion{199'680, 2'408};
inline constexpr Region kEyesBounding{202'240, 6'272};
inline constexpr Region kGazeChannel0{208'640, 4};
inline constexpr Region kGazeChannel1{208'896, 2};
inline constexpr Region kGazeResult{209'152, 24};
inline constexpr Region kFaceBounding{209'408, 4'096};
inline constexpr Region kFaceAngleChannel0{213'504, 1};
inline constexpr Region kFaceAngleChannel1{213'760, 1};
inline constexpr Region kFaceAngleChannel2{214'016, 1};
inline constexpr Region kFaceAngleChannel3{214'272, 1};
inline constexpr Region kFaceAngleChannel4{214'528, 10};
inline constexpr Region kFaceAngleResult{214'784, 56};
inline constexpr Region kFaceFeatureInput{215'040, 12'544};
inline constexpr Region kFaceFeatureChannel0{227'584, 128};
inline constexpr Region kFaceFeatureResult{227'840, 128};

/** Every region, in the order in which they lie. */
inline constexpr Region kAll[] = {
        kDetectorInput,       kOutputChannel0,    kOutputChannel1,
        kOutputChannel2,      kOutputChannel3,    kOutputChannel4,
        kOutputChannel5,      kOutputChannel6,    kFusion,
        kEyesBounding,        kGazeChannel0,      kGazeChannel1,
        kGazeResult,          kFaceBounding,      kFaceAngleChannel0,
        kFaceAngleChannel1,   kFaceAngleChannel2, kFaceAngleChannel3,
        kFaceAngleChannel4,   kFaceAngleResult,   kFaceFeatureInput,
        kFaceFeatureChannel0, kFaceFeatureResult,
};

constexpr bool RegionsFollowEachOther() {
    uint32_t end = 0;
    for (const Region& region : kAll) {
        if (region.offset < end) return false;
        end = region.End();
    }
    return end <= aov_event::kOutputCapacity;
}
static_assert(RegionsFollowEachOther());

inline constexpr size_t kFaceAngleFloats = 14;
inline constexpr size_t kGazeFloats = 6;
static_assert(kFaceAngleResult.size == kFaceAngleFloats * sizeof(float));
static_assert(kGazeResult.size == kGazeFloats * sizeof(float));

/** One fusion item: an integer and 19 floats, whose meaning is the detector's. */
struct FusionItem {
    static constexpr size_t kLength = 20;

    int32_t first;
    float rest[kLength - 1];
};

struct FusionBlock {
    static constexpr size_t kMaxItems = 30;

    uint32_t count;
    float rotateAngle;
    FusionItem items[kMaxItems];
};

static_assert(sizeof(FusionItem) == 80);
static_assert(offsetof(FusionItem, rest) == 4);
static_assert(offsetof(FusionBlock, rotateAngle) == 4);
static_assert(offsetof(FusionBlock, items) == 8);
static_assert(sizeof(FusionBlock) == kFusion.size);

}  // namespace zarvo::aon::layout
