#pragma once

#include <cstddef>

#include "platform/mtkcam/aov_event.h"

/**
 * Where the simulated stream puts each block in a record's `output`. This is the sending side's
 * own copy of the layout: the receiving side has its own, so that a wrong number on either side
 * shows.
 *
 * What the numbers mean is this simulator's own. `[f]` below is a float, `[b]` a byte. Right and
 * down are the picture's. A face is one that the detector counts: its middle is well inside the
 * picture, and its likelihood, which falls smoothly to 0 at the picture's edge and is less for a
 * face that is turned away, is at least 0.5. The faces are in the order in which they came; the
 * first one stays the first until it leaves. Without a face the blocks that speak of one are zero.
 */
namespace zarvo::host::layout {

struct Region {
    size_t offset;
    size_t size;
};

// The detector, in every record: a luma picture of 288 × 288, then for grids of 72, 36 and 18
// cells a side, row by row, how likely a face is in each cell [b], 255 for certain; then 16 [b] per
// cell of the same grids: distances to the face's left, top, right and bottom edge, right and down
// to each of the five landmarks, likelihood, the last 8 bits of the track id; zero where no face
// is. Distances are 128 + 127 × picture heights. Then the number of faces, u32. The grids also
// show, fainter, who is at the picture's edge and not counted yet.
inline constexpr size_t kDetectorSide = 288;
inline constexpr size_t kBytesPerCell = 16;
inline constexpr Region kDetectorInput{0, 82'944};
inline constexpr Region kDetectorOutput0{82'944, 5'184};
inline constexpr Region kDetectorOutput1{88'320, 1'296};
inline constexpr Region kDetectorOutput2{89'856, 324};
inline constexpr Region kDetectorOutput3{90'368, 82'944};
inline constexpr Region kDetectorOutput4{173'312, 20'736};
inline constexpr Region kDetectorOutput5{194'048, 5'184};
inline constexpr Region kDetectorOutput6{199'424, 4};

// Fusion: u32 count of faces, how far the scene is turned clockwise in the picture [f] in degrees,
// then 30 items of 80 bytes, zero beyond the count: i32 track id, a new one for each visit; left,
// top, width, height of the head's box [f], which may reach beyond the frame; likelihood [f]; x and
// y of left eye, right eye, nose, left and right corner of the mouth [f]; yaw to the right, pitch
// down, roll clockwise [f] in degrees, zero for a face that faces the sensor; openness of the eyes
// [f], 0 to 1. Places are in pixels of the frame.
inline constexpr Region kFusion{199'680, 2'408};
inline constexpr size_t kFusionHeader = 8;
inline constexpr size_t kFusionItem = 80;

// In every record: the left, then the right eye of the first face, 56 × 56 luma each.
inline constexpr size_t kEyeSide = 56;
inline constexpr Region kEyes{202'240, 6'272};

// Gaze of the first face: yaw, pitch (128 + degrees), openness, likelihood [b]; openness of each
// eye [b]; then the result: direction right, down, towards the sensor as a unit vector, yaw and
// pitch in degrees, openness [f]. Counted as the head's angles are, and not from the head: zero
// for eyes that look at the sensor, however the head is held.
inline constexpr Region kGazeOutput0{208'640, 4};
inline constexpr Region kGazeOutput1{208'896, 2};
inline constexpr Region kGazeResult{209'152, 24};

// Angle of the first face: 64 × 64 luma; yaw, pitch, roll (128 + degrees), likelihood [b] each
// in a region of its own; five landmarks in that picture, x and y [b]; then the result: yaw,
// pitch, roll in degrees, likelihood, five landmarks in pixels of the frame, x and y [f].
inline constexpr size_t kFaceSide = 64;
inline constexpr Region kFace{209'408, 4'096};
inline constexpr Region kAngleOutput0{213'504, 1};
inline constexpr Region kAngleOutput1{213'760, 1};
inline constexpr Region kAngleOutput2{214'016, 1};
inline constexpr Region kAngleOutput3{214'272, 1};
inline constexpr Region kAngleOutput4{214'528, 10};
inline constexpr Region kAngleResult{214'784, 56};

// Feature of the first face: 112 × 112 luma; the vector as the network gives it [b], around 128;
// the same vector as the result. It is the person's: nearly the same in every visit and of every
// seed, a few units off with the turning of the head; two persons' numbers differ by tens.
inline constexpr size_t kFeatureSide = 112;
inline constexpr Region kFeatureInput{215'040, 12'544};
inline constexpr Region kFeatureOutput0{227'584, 128};
inline constexpr Region kFeatureResult{227'840, 128};

/** Bytes of `output` that are in use, up to the next boundary of 256. */
inline constexpr size_t kOutputSize = 228'096;

static_assert(kDetectorInput.size == kDetectorSide * kDetectorSide);
static_assert(kDetectorOutput3.size == kDetectorOutput0.size * kBytesPerCell);
static_assert(kDetectorOutput4.size == kDetectorOutput1.size * kBytesPerCell);
static_assert(kDetectorOutput5.size == kDetectorOutput2.size * kBytesPerCell);
static_assert(kFusion.size == kFusionHeader + 30 * kFusionItem);
static_assert(kEyes.size == 2 * kEyeSide * kEyeSide);
static_assert(kFace.size == kFaceSide * kFaceSide);
static_assert(kFeatureInput.size == kFeatureSide * kFeatureSide);
static_assert(kFeatureResult.offset + kFeatureResult.size < kOutputSize);
static_assert(kOutputSize < aov_event::kOutputCapacity);

}  // namespace zarvo::host::layout
