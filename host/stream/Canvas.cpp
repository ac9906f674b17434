#include "host/stream/Canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

/** The first whole number not below `value`, cut to 0 and `limit`. */
size_t Bound(float value, size_t limit) {
    return static_cast<size_t>(std::clamp(std::ceil(value), 0.0F, static_cast<float>(limit)));
}

}  // namespace

Color Color::Lit(float light) const {
    return {ToByte(static_cast<float>(y) * light), u, v};
}

uint8_t ToByte(float value) {
    return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F));
}

Canvas::Canvas(std::span<uint8_t> pixels, size_t width, size_t height)
    : mLuma(pixels.first(width * height)),
      mChroma(pixels.subspan(width * height, width * height / 2)),
      mWidth(width),
      mHeight(height) {}

void Canvas::FillShaded(Color color, std::span<const float> rowLuma,
                        std::span<const float> columnLuma) {
    // Rows in steps of whole levels are mostly equal to the one before, and copied.
    float drawn = -1;
    for (size_t y = 0; y < mHeight; ++y) {
        uint8_t* row = mLuma.data() + y * mWidth;
        const float base = std::round(static_cast<float>(color.y) + rowLuma[y]);
        if (y > 0 && base == drawn) {
            std::copy_n(row - mWidth, mWidth, row);
            continue;
        }
        drawn = base;
        for (size_t x = 0; x < mWidth; ++x)
            row[x] = ToByte(base + columnLuma[x]);
    }
    for (size_t x = 0; x < std::min(mWidth, mChroma.size()); ++x)
        mChroma[x] = x % 2 == 0 ? color.u : color.v;
    for (size_t i = mWidth; i < mChroma.size(); i += mWidth)
        std::copy_n(mChroma.data(), std::min(mWidth, mChroma.size() - i), mChroma.data() + i);
}

void Canvas::FillRow(size_t row, float left, float right, Color color) {
    const size_t begin = Bound(left, mWidth);
    const size_t end = Bound(right, mWidth);
    if (begin >= end) return;
    std::fill_n(mLuma.data() + row * mWidth + begin, end - begin, color.y);
    if (row % 2 != 0 || row / 2 >= mHeight / 2) return;
    uint8_t* chroma = mChroma.data() + row / 2 * mWidth;
    for (size_t x = begin & ~size_t{1}; x + 1 < mWidth && x < end; x += 2) {
        chroma[x] = color.u;
        chroma[x + 1] = color.v;
    }
}

void Canvas::FillEllipse(const Ellipse& ellipse, Color color) {
    if (ellipse.halfWidth <= 0 || ellipse.halfHeight <= 0) return;
    const float c = std::cos(ellipse.angle * kDegree);
    const float s = std::sin(ellipse.angle * kDegree);
    const float w = 1 / (ellipse.halfWidth * ellipse.halfWidth);
    const float h = 1 / (ellipse.halfHeight * ellipse.halfHeight);
    // A point (dx, dy) from the centre is inside when a·dx² + 2b·dx·dy + d·dy² <= 1.
    const float a = c * c * w + s * s * h;
    const float b = c * s * (w - h);
    const float d = s * s * w + c * c * h;
    const float reach = std::sqrt(a / (a * d - b * b));
    const size_t end = Bound(ellipse.centre.y + reach, mHeight);
    for (size_t row = Bound(ellipse.centre.y - reach, mHeight); row < end; ++row) {
        const float dy = static_cast<float>(row) - ellipse.centre.y;
        const float root = std::sqrt(std::max(0.0F, b * b * dy * dy - a * (d * dy * dy - 1)));
        const float middle = ellipse.centre.x - b * dy / a;
        FillRow(row, middle - root / a, middle + root / a, color);
    }
}

void Canvas::FillBox(const Box& box, Color color) {
    const size_t end = Bound(box.top + box.height, mHeight);
    for (size_t row = Bound(box.top, mHeight); row < end; ++row)
        FillRow(row, box.left, box.left + box.width, color);
}

void Canvas::DrawFrame(const Box& box, float thickness, Color color) {
    FillBox({box.left, box.top, box.width, thickness}, color);
    FillBox({box.left, box.top + box.height - thickness, box.width, thickness}, color);
    FillBox({box.left, box.top, thickness, box.height}, color);
    FillBox({box.left + box.width - thickness, box.top, thickness, box.height}, color);
}

}  // namespace zarvo::host
