#include "host/stream/Shapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {

Span Span::Common(const Span& other) const {
    return {std::max(left, other.left), std::min(right, other.right)};
}

EllipseRows::EllipseRows(const Ellipse& ellipse) : mCentre(ellipse.centre) {
    if (ellipse.halfWidth <= 0 || ellipse.halfHeight <= 0) return;
    const float angle = ellipse.angle * std::numbers::pi_v<float> / 180;
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float w = 1 / (ellipse.halfWidth * ellipse.halfWidth);
    const float h = 1 / (ellipse.halfHeight * ellipse.halfHeight);
    mA = c * c * w + s * s * h;
    mB = c * s * (w - h);
    mD = s * s * w + c * c * h;
    mReach = std::sqrt(mA / (w * h));
}

Span EllipseRows::At(float row) const {
    const float y = row - mCentre.y;
    const float inside = mB * mB * y * y - mA * (mD * y * y - 1);
    if (mReach == 0 || inside <= 0) return {};
    const float middle = mCentre.x - mB * y / mA;
    const float half = std::sqrt(inside) / mA;
    return {middle - half, middle + half};
}

Span PolygonRow(std::span<const Point> corners, float row) {
    Span span{1, 0};
    bool crossed = false;
    for (size_t i = 0; i < corners.size(); ++i) {
        const Point& a = corners[i];
        const Point& b = corners[(i + 1) % corners.size()];
        if ((a.y <= row) == (b.y <= row)) continue;
        const float x = a.x + (b.x - a.x) * (row - a.y) / (b.y - a.y);
        span = crossed ? Span{std::min(span.left, x), std::max(span.right, x)} : Span{x, x};
        crossed = true;
    }
    return span;
}

}  // namespace zarvo::host
