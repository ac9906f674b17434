#include "host/stream/picture/HeadShape.h"

#include <algorithm>
#include <cmath>

namespace zarvo::host {
namespace {

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
      mYaw{std::cos(Radians(face.yaw)), std::sin(Radians(face.yaw))},
      mPitch{std::cos(Radians(face.pitch)), std::sin(Radians(face.pitch))},
      mRolled{std::cos(Radians(face.roll)), std::sin(Radians(face.roll))} {}

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

}  // namespace zarvo::host
