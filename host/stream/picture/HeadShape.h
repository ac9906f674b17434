#pragma once

#include "host/stream/picture/Shapes.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/**
 * A head as a turned ball of the right proportions, and what lies on it. Lengths are counted in
 * half heads: the head reaches from -1 to 1 down, and from -kWidth to kWidth to the right.
 */
class HeadShape {
  public:
    static constexpr float kWidth = 0.76F;
    static constexpr float kDepth = 0.84F;

    HeadShape(const Face& face, float pictureHeight);

    /** Pixels of half a head. */
    float Unit() const { return mUnit; }
    /** Where a point of the unturned head is in the picture, `lift` above the surface. */
    Point At(float right, float down, float lift = 0) const;
    /** How much of such a point the sensor sees: 1, and less to 0 where the head hides it. */
    float Seen(float right, float down) const;
    /** Something flat on the surface: foreshortened where it is turned away. */
    Ellipse Patch(Point middle, float halfWidth, float halfHeight) const;
    /** Something beside a point of the picture, turned as the head rolls. */
    Point Beside(Point point, float right, float down) const;
    /** The head's outline. */
    Ellipse Outline() const;

  private:
    /** How far a point is in front of the head's middle, as the sensor sees it. */
    float Ahead(float right, float down, float lift) const;

    Point mCentre;
    float mUnit;
    float mRoll;
    struct Turn {
        float cosine, sine;
    };
    Turn mYaw, mPitch, mRolled;
};

}  // namespace zarvo::host
