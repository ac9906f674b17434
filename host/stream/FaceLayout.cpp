#include "host/stream/FaceLayout.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

struct Place {
    float right, down, lift;
};

/** Where the landmarks are on a head. */
constexpr std::array<Place, FaceLayout::kLandmarks> kPlaces{{{-0.31F, -0.08F, 0},
                                                             {0.31F, -0.08F, 0},
                                                             {0, 0.24F, 0.12F},
                                                             {-0.20F, 0.55F, 0},
                                                             {0.20F, 0.55F, 0}}};

/** How deep the unturned head is at a point of the surface. */
float Depth(float right, float down) {
    const float x = right / HeadShape::kWidth;
    return HeadShape::kDepth * std::sqrt(std::max(0.0F, 1 - x * x - down * down));
}

}  // namespace

HeadShape::HeadShape(const Face& face, float pictureHeight)
    : mCentre{face.centre.x * pictureHeight, face.centre.y * pictureHeight},
      mUnit(face.size * pictureHeight),
      mRoll(face.roll),
      mYaw{std::cos(face.yaw * kDegree), std::sin(face.yaw * kDegree)},
      mPitch{std::cos(face.pitch * kDegree), std::sin(face.pitch * kDegree)},
      mRolled{std::cos(face.roll * kDegree), std::sin(face.roll * kDegree)} {}

Point HeadShape::At(float right, float down, float lift) const {
    const float depth = Depth(right, down) + lift;
    return Beside(mCentre, mUnit * (right * mYaw.cosine + depth * mYaw.sine),
                  mUnit * (down * mPitch.cosine + Ahead(right, down, lift) * mPitch.sine));
}

float HeadShape::Ahead(float right, float down, float lift) const {
    return (Depth(right, down) + lift) * mYaw.cosine - right * mYaw.sine;
}

float HeadShape::Seen(float right, float down) const {
    return std::clamp(0.5F + 4 * Ahead(right, down, 0), 0.0F, 1.0F);
}

Ellipse HeadShape::Patch(Point middle, float halfWidth, float halfHeight) const {
    const Point left = At(middle.x - halfWidth, middle.y);
    const Point right = At(middle.x + halfWidth, middle.y);
    const float width = std::hypot(right.x - left.x, right.y - left.y) / 2;
    return {{(left.x + right.x) / 2, (left.y + right.y) / 2},
            width,
            mUnit * halfHeight * mPitch.cosine,
            mRoll};
}

Point HeadShape::Beside(Point point, float right, float down) const {
    return {point.x + right * mRolled.cosine - down * mRolled.sine,
            point.y + right * mRolled.sine + down * mRolled.cosine};
}

Ellipse HeadShape::Outline() const {
    const float width = std::hypot(kWidth * mYaw.cosine, kDepth * mYaw.sine);
    return {mCentre, mUnit * width, mUnit, mRoll};
}

Box FaceLayout::EyeBox(Landmark eye) const {
    const float half = 0.24F * headHeight;
    return {landmarks[eye].x - half, landmarks[eye].y - half, 2 * half, 2 * half};
}

Point FaceLayout::GazeEnd(Landmark eye, const Face& face) const {
    const float length = 0.6F * headHeight;
    return {landmarks[eye].x + length * std::sin(face.gazeYaw * kDegree),
            landmarks[eye].y + length * std::sin(face.gazePitch * kDegree)};
}

FaceLayout LayOut(const Face& face, float pictureHeight) {
    const HeadShape head(face, pictureHeight);
    const Ellipse outline = head.Outline();
    FaceLayout layout;
    layout.centre = outline.centre;
    layout.headWidth = outline.halfWidth;
    layout.headHeight = outline.halfHeight;
    std::ranges::transform(kPlaces, layout.landmarks.begin(), [&](const Place& place) {
        return head.At(place.right, place.down, place.lift);
    });
    layout.box = {layout.centre.x - layout.headWidth, layout.centre.y - layout.headHeight,
                  2 * layout.headWidth, 2 * layout.headHeight};
    return layout;
}

}  // namespace zarvo::host
