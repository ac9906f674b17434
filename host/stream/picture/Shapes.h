#pragma once

#include <span>

#include "host/stream/scene/Point.h"

namespace zarvo::host {

/** A rectangle in pixels. */
struct Box {
    float left = 0, top = 0, width = 0, height = 0;
};

/** An ellipse in pixels, turned clockwise by `angle` degrees. */
struct Ellipse {
    Point centre;
    float halfWidth = 0, halfHeight = 0;
    float angle = 0;
};

/** What a shape covers of a row; nothing when `right` is not beyond `left`. */
struct RowSpan {
    float left = 0, right = 0;

    /** What both cover. */
    RowSpan Intersection(const RowSpan& other) const;
};

/** An ellipse row by row. */
class EllipseRows {
  public:
    explicit EllipseRows(const Ellipse& ellipse);

    float Top() const { return mCentre.y - mReach; }
    float Bottom() const { return mCentre.y + mReach; }
    RowSpan At(float row) const;

  private:
    const Point mCentre;
    /** A point (x, y) from the centre is inside when a·x² + 2b·x·y + d·y² <= 1. */
    float mA = 1, mB = 0, mD = 1;
    float mReach = 0;
};

/** A row of a convex polygon. */
RowSpan PolygonRow(std::span<const Point> corners, float row);

}  // namespace zarvo::host
