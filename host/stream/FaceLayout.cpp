#include "host/stream/FaceLayout.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {
namespace {

constexpr float kHeadAspect = 0.76F;
constexpr float kEyeWidth = 0.15F;
constexpr float kDegree = std::numbers::pi_v<float> / 180;

}  // namespace

Point OnFace(const Face& face, float right, float down, float pictureHeight) {
    // The head is nearly a ball: what lies in its middle lies nearer and travels further.
    const float depth = std::sqrt(std::max(0.0F, 1 - right * right - down * down)) * kHeadAspect;
    const float x = right * std::cos(face.yaw * kDegree) + depth * std::sin(face.yaw * kDegree);
    const float y = down * std::cos(face.pitch * kDegree) + depth * std::sin(face.pitch * kDegree);
    const float c = std::cos(face.roll * kDegree);
    const float s = std::sin(face.roll * kDegree);
    return {(face.centre.x + face.size * (x * c - y * s)) * pictureHeight,
            (face.centre.y + face.size * (x * s + y * c)) * pictureHeight};
}

Box FaceLayout::EyeBox(Landmark eye) const {
    const float half = 1.5F * eyeWidth;
    return {landmarks[eye].x - half, landmarks[eye].y - half, 2 * half, 2 * half};
}

FaceLayout LayOut(const Face& face, float pictureHeight) {
    const auto at = [&](float right, float down) {
        return OnFace(face, right, down, pictureHeight);
    };
    FaceLayout layout;
    layout.centre = {face.centre.x * pictureHeight, face.centre.y * pictureHeight};
    layout.headHeight = face.size * pictureHeight;
    layout.headWidth = layout.headHeight * kHeadAspect;
    layout.eyeWidth = layout.headHeight * kEyeWidth;
    layout.landmarks = {at(-0.30F, -0.12F), at(0.30F, -0.12F), at(0, 0.18F), at(-0.22F, 0.48F),
                        at(0.22F, 0.48F)};
    layout.box = {layout.centre.x - layout.headWidth, layout.centre.y - layout.headHeight,
                  2 * layout.headWidth, 2 * layout.headHeight};
    return layout;
}

}  // namespace zarvo::host
