#include "host/stream/OutputRegions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "host/stream/RecordLayout.h"
#include "host/stream/picture/Canvas.h"
#include "host/stream/scene/Random.h"

namespace zarvo::host {
namespace {

using layout::Region;
using Bytes = std::span<uint8_t>;

/** Sets the numbers of feature vectors apart from all others of chance. */
constexpr uint64_t kFeatures = 0x6661636573;

Bytes At(Bytes output, Region region) {
    return output.subspan(region.offset, region.size);
}

template <typename T>
void Put(Bytes block, size_t offset, const T& value) {
    std::memcpy(block.subspan(offset, sizeof(value)).data(), &value, sizeof(value));
}

uint8_t DegreesToByte(float degrees) {
    return ToByte(128 + degrees);
}

uint8_t ShareToByte(float share) {
    return ToByte(255 * share);
}

size_t CutTo(float place, size_t count) {
    return static_cast<size_t>(std::clamp(place, 0.0F, static_cast<float>(count - 1)));
}

/** Scales what lies in the box, whose parts outside repeat the picture's edge, to side × side. */
void Crop(const LumaView& picture, const Box& box, size_t side, Bytes out) {
    const float step = 1 / static_cast<float>(side);
    std::array<size_t, layout::kDetectorSide> columns{};
    for (size_t i = 0; i < side; ++i)
        columns[i] =
                CutTo(box.left + box.width * (static_cast<float>(i) + 0.5F) * step, picture.width);
    for (size_t y = 0; y < side; ++y) {
        const float place = box.top + box.height * (static_cast<float>(y) + 0.5F) * step;
        const uint8_t* row = &picture.pixels[CutTo(place, picture.height) * picture.width];
        uint8_t* target = &out[y * side];
        for (size_t x = 0; x < side; ++x)
            target[x] = row[columns[x]];
    }
}

struct Nearest {
    size_t face = 0;
    /** Likelihood of the face here, 0 to 1. */
    float heat = 0;
};

Nearest NearestFace(const View& view, Point place) {
    Nearest nearest;
    for (size_t i = 0; i < view.scene.shownCount; ++i) {
        const FaceLayout& face = view.faces[i];
        const float right = (place.x - face.centre.x) / face.headWidth;
        const float down = (place.y - face.centre.y) / face.headHeight;
        const float inside = 1 - std::sqrt(right * right + down * down) / 1.5F;
        const float heat = view.scene.faces[i].confidence * std::max(0.0F, inside);
        if (heat > nearest.heat) nearest = {i, heat};
    }
    return nearest;
}

/** What the detector says of the face it sees from one cell. */
void WriteCell(const View& view, Point place, const Nearest& nearest, Bytes cell) {
    const FaceLayout& face = view.faces[nearest.face];
    const auto height = static_cast<float>(view.picture.height);
    const auto distance = [height](float to, float from) {
        return ToByte(128 + 127 * (to - from) / height);
    };
    cell[0] = distance(face.box.left, place.x);
    cell[1] = distance(face.box.top, place.y);
    cell[2] = distance(face.box.left + face.box.width, place.x);
    cell[3] = distance(face.box.top + face.box.height, place.y);
    for (size_t i = 0; i < face.landmarks.size(); ++i) {
        cell[4 + 2 * i] = distance(face.landmarks[i].x, place.x);
        cell[5 + 2 * i] = distance(face.landmarks[i].y, place.y);
    }
    cell[14] = ShareToByte(nearest.heat);
    cell[15] = static_cast<uint8_t>(view.scene.faces[nearest.face].trackId);
}

void WriteGrid(const View& view, size_t side, Bytes heat, Bytes cells) {
    const float columnWidth = static_cast<float>(view.picture.width) / static_cast<float>(side);
    const float rowHeight = static_cast<float>(view.picture.height) / static_cast<float>(side);
    for (size_t i = 0; i < side * side; ++i) {
        const size_t column = i % side;
        const size_t row = i / side;
        const Point place{(static_cast<float>(column) + 0.5F) * columnWidth,
                          (static_cast<float>(row) + 0.5F) * rowHeight};
        const Nearest nearest = NearestFace(view, place);
        heat[i] = ShareToByte(nearest.heat);
        if (nearest.heat > 0)
            WriteCell(view, place, nearest, cells.subspan(i * layout::kBytesPerCell));
    }
}

void PutLandmarks(const FaceLayout& face, Bytes block, size_t offset) {
    static_assert(sizeof(face.landmarks) == 10 * sizeof(float));
    Put(block, offset, face.landmarks);
}

void WriteFusionItem(const Face& face, const FaceLayout& layout, Bytes item) {
    Put(item, 0, face.trackId);
    Put(item, 4, layout.box);
    Put(item, 20, face.confidence);
    PutLandmarks(layout, item, 24);
    Put(item, 64, std::array{face.yaw, face.pitch, face.roll, face.eyeOpenness});
}

}  // namespace

void PutCount(std::span<uint8_t> block, size_t offset, uint32_t count) {
    Put(block, offset, count);
}

void WriteDetector(const View& view, Bytes output) {
    const Box whole{0, 0, static_cast<float>(view.picture.width),
                    static_cast<float>(view.picture.height)};
    Crop(view.picture, whole, layout::kDetectorSide, At(output, layout::kDetectorInput));
    WriteGrid(view, 72, At(output, layout::kDetectorOutput0), At(output, layout::kDetectorOutput3));
    WriteGrid(view, 36, At(output, layout::kDetectorOutput1), At(output, layout::kDetectorOutput4));
    WriteGrid(view, 18, At(output, layout::kDetectorOutput2), At(output, layout::kDetectorOutput5));
    PutCount(At(output, layout::kDetectorOutput6), 0, static_cast<uint32_t>(view.scene.faceCount));
    if (!view.HasFace()) return;
    constexpr size_t kEyeBytes = layout::kEyeSide * layout::kEyeSide;
    const Bytes eyes = At(output, layout::kEyes);
    Crop(view.picture, view.faces[0].EyeBox(FaceLayout::kLeftEye), layout::kEyeSide,
         eyes.first(kEyeBytes));
    Crop(view.picture, view.faces[0].EyeBox(FaceLayout::kRightEye), layout::kEyeSide,
         eyes.subspan(kEyeBytes));
}

void WriteFusion(const View& view, Bytes output) {
    const Bytes block = At(output, layout::kFusion);
    PutCount(block, 0, static_cast<uint32_t>(view.scene.faceCount));
    Put(block, 4, view.scene.rotation);
    for (size_t i = 0; i < view.scene.faceCount; ++i)
        WriteFusionItem(view.scene.faces[i], view.faces[i],
                        block.subspan(layout::kFusionHeader + i * layout::kFusionItem));
}

void WriteGaze(const View& view, Bytes output) {
    if (!view.HasFace()) return;
    const Face& face = view.scene.faces[0];
    const uint8_t open = ShareToByte(face.eyeOpenness);
    Put(At(output, layout::kGazeOutput0), 0,
        std::array{DegreesToByte(face.gazeYaw), DegreesToByte(face.gazePitch), open,
                   ShareToByte(face.confidence)});
    Put(At(output, layout::kGazeOutput1), 0, std::array{open, open});
    const float yaw = Radians(face.gazeYaw);
    const float pitch = Radians(face.gazePitch);
    const std::array<float, 6> result{std::sin(yaw) * std::cos(pitch),
                                      std::sin(pitch),
                                      std::cos(yaw) * std::cos(pitch),
                                      face.gazeYaw,
                                      face.gazePitch,
                                      face.eyeOpenness};
    Put(At(output, layout::kGazeResult), 0, result);
}

void WriteFaceAngle(const View& view, Bytes output) {
    if (!view.HasFace()) return;
    const Face& face = view.scene.faces[0];
    const FaceLayout& layout = view.faces[0];
    Crop(view.picture, layout.box, layout::kFaceSide, At(output, layout::kFace));
    At(output, layout::kAngleOutput0)[0] = DegreesToByte(face.yaw);
    At(output, layout::kAngleOutput1)[0] = DegreesToByte(face.pitch);
    At(output, layout::kAngleOutput2)[0] = DegreesToByte(face.roll);
    At(output, layout::kAngleOutput3)[0] = ShareToByte(face.confidence);
    const Bytes places = At(output, layout::kAngleOutput4);
    constexpr auto kSide = static_cast<float>(layout::kFaceSide);
    for (size_t i = 0; i < layout.landmarks.size(); ++i) {
        const Point& landmark = layout.landmarks[i];
        places[2 * i] = ToByte(kSide * (landmark.x - layout.box.left) / layout.box.width);
        places[2 * i + 1] = ToByte(kSide * (landmark.y - layout.box.top) / layout.box.height);
    }
    const Bytes result = At(output, layout::kAngleResult);
    Put(result, 0, std::array{face.yaw, face.pitch, face.roll, face.confidence});
    PutLandmarks(layout, result, 16);
}

void WriteFaceFeature(const View& view, Bytes output) {
    if (!view.HasFace()) return;
    const Face& face = view.scene.faces[0];
    Crop(view.picture, view.faces[0].box, layout::kFeatureSide, At(output, layout::kFeatureInput));
    // Who it is, in large numbers that stay; how the head is held, in small ones.
    const uint64_t person = SeedOf(kFeatures, face.person);
    const Bytes vector = At(output, layout::kFeatureOutput0);
    for (size_t i = 0; i < vector.size(); ++i) {
        const float identity = 200 * (RandomUnit(person, 3 * i) - 0.5F);
        const float pose = face.yaw / 10 * (RandomUnit(person, 3 * i + 1) - 0.5F) +
                           face.pitch / 10 * (RandomUnit(person, 3 * i + 2) - 0.5F);
        vector[i] = ToByte(128 + identity + pose);
    }
    std::ranges::copy(vector, At(output, layout::kFeatureResult).begin());
}

}  // namespace zarvo::host
