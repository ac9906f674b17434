#include "host/stream/picture/Shapes.h"

#include <algorithm>
#include <cmath>

namespace zarvo::host {

RowSpan RowSpan::Intersection(const RowSpan& other) const {
    return {std::max(left, other.left), std::min(right, other.right)};
}

EllipseRows::EllipseRows(const Ellipse& ellipse) : mCentre(ellipse.centre) {
    if (ellipse.halfWidth <= 0 || ellipse.halfHeight <= 0) return;
    const float c = std::cos(Radians(ellipse.angle));
    const float s = std::sin(Radians(ellipse.angle));
    const float w = 1 / (ellipse.halfWidth * ellipse.halfWidth);
    const float h = 1 / (ellipse.halfHeight * ellipse.halfHeight);
    mA = c * c * w + s * s * h;
    mB = c * s * (w - h);
    mD = s * s * w + c * c * h;
    mReach = std::sqrt(mA / (w * h));
}

RowSpan EllipseRows::At(float row) const {
    const float y = row - mCentre.y;
    const float inside = mB * mB * y * y - mA * (mD * y * y - 1);
    if (mReach == 0 || inside <= 0) return {};
    const float middle = mCentre.x - mB * y / mA;
    const float half = std::sqrt(inside) / mA;
    return {middle - half, middle + half};
}

RowSpan PolygonRow(std::span<const Point> corners, float row) {
    RowSpan span{1, 0};
    bool crossed = false;
    for (size_t i = 0; i < corners.size(); ++i) {
        const Point& a = corners[i];
        const Point& b = corners[(i + 1) % corners.size()];
        if ((a.y <= row) == (b.y <= row)) continue;
        const float x = a.x + (b.x - a.x) * (row - a.y) / (b.y - a.y);
        span = crossed ? RowSpan{std::min(span.left, x), std::max(span.right, x)} : RowSpan{x, x};
        crossed = true;
    }
    return span;
}

}  // namespace zarvo::host
