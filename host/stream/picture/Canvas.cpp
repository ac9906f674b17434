#include "host/stream/picture/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zarvo::host {
namespace {

float Cut(float value, size_t limit) {
    return std::clamp(value, 0.0F, static_cast<float>(limit));
}

/** The first whole number not below `value`, cut to 0 and `limit`. */
size_t Bound(float value, size_t limit) {
    return static_cast<size_t>(Cut(std::ceil(value), limit));
}

}  // namespace

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

template <typename Fill>
void Canvas::EachRow(float top, float bottom, Fill fill) {
    const size_t end = Bound(bottom, mHeight);
    for (size_t row = Bound(top, mHeight); row < end; ++row)
        fill(row, static_cast<float>(row));
}

void Canvas::FillEllipse(const Ellipse& ellipse, const Ink& ink) {
    const EllipseRows rows(ellipse);
    EachRow(rows.Top(), rows.Bottom(),
            [&](size_t row, float y) { FillRow(row, rows.At(y), ink, ellipse.centre); });
}

void Canvas::FillIntersection(const Ellipse& ellipse, const Ellipse& frame, const Ink& ink) {
    const EllipseRows rows(ellipse);
    const EllipseRows frameRows(frame);
    EachRow(rows.Top(), rows.Bottom(), [&](size_t row, float y) {
        FillRow(row, rows.At(y).Intersection(frameRows.At(y)), ink, ellipse.centre);
    });
}

void Canvas::FillRing(const Ellipse& outer, const Ellipse& inner, const Ink& ink) {
    const EllipseRows rows(outer);
    const EllipseRows innerRows(inner);
    EachRow(rows.Top(), rows.Bottom(), [&](size_t row, float y) {
        const RowSpan whole = rows.At(y);
        const RowSpan hole = innerRows.At(y);
        const bool split = hole.left < hole.right;
        FillRow(row, {whole.left, split ? hole.left : whole.right}, ink, outer.centre);
        if (split) FillRow(row, {hole.right, whole.right}, ink, outer.centre);
    });
}

void Canvas::FillPolygon(std::span<const Point> corners, const Ink& ink) {
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &Point::y);
    EachRow(top.y, bottom.y, [&](size_t row, float y) {
        FillRow(row, PolygonRow(corners, y), ink, corners.front());
    });
}

void Canvas::DrawLine(Point from, Point to, float thickness, const Ink& ink) {
    const float length = std::hypot(to.x - from.x, to.y - from.y);
    if (length <= 0) return;
    const float right = (to.y - from.y) * thickness / (2 * length);
    const float down = (to.x - from.x) * thickness / (2 * length);
    FillPolygon(std::array{Point{from.x + right, from.y - down}, Point{to.x + right, to.y - down},
                           Point{to.x - right, to.y + down}, Point{from.x - right, from.y + down}},
                ink);
}

void Canvas::FillBox(const Box& box, Color color) {
    EachRow(box.top, box.top + box.height, [&](size_t row, float) {
        FillRow(row, {box.left, box.left + box.width}, {color}, {});
    });
}

void Canvas::DrawFrame(const Box& box, float thickness, Color color) {
    FillBox({box.left, box.top, box.width, thickness}, color);
    FillBox({box.left, box.top + box.height - thickness, box.width, thickness}, color);
    FillBox({box.left, box.top, thickness, box.height}, color);
    FillBox({box.left + box.width - thickness, box.top, thickness, box.height}, color);
}

void Canvas::FillRow(size_t row, const RowSpan& span, const Ink& ink, Point middle) {
    // Pixel x reaches from x to x + 1 here, and the outermost ones are covered in part.
    const float left = Cut(span.left + 0.5F, mWidth);
    const float right = Cut(span.right + 0.5F, mWidth);
    if (!(left < right)) return;
    const float base = static_cast<float>(ink.color.y) - ink.right * middle.x +
                       ink.down * (static_cast<float>(row) - middle.y);
    uint8_t* luma = mLuma.data() + row * mWidth;
    const auto blend = [&](size_t x, float share) {
        const auto old = static_cast<float>(luma[x]);
        luma[x] = ToByte(old + (base + ink.right * static_cast<float>(x) - old) * share);
    };
    const auto first = static_cast<size_t>(left);
    const auto last = static_cast<size_t>(right);
    if (first == last) return blend(first, right - left);
    blend(first, static_cast<float>(first + 1) - left);
    if (last < mWidth) blend(last, right - static_cast<float>(last));
    FillLuma(luma, first + 1, last, base + ink.right * static_cast<float>(first + 1), ink.right);
    FillChroma(row, Bound(span.left, mWidth), Bound(span.right, mWidth), ink.color);
}

void Canvas::FillLuma(uint8_t* row, size_t begin, size_t end, float luma, float step) {
    if (step == 0) {
        std::fill(row + begin, row + end, ToByte(luma));
        return;
    }
    // In 1/65536 levels, rounded.
    auto value = static_cast<int32_t>((luma + 0.5F) * 65536);
    const auto change = static_cast<int32_t>(step * 65536);
    for (size_t x = begin; x < end; ++x, value += change)
        row[x] = static_cast<uint8_t>(std::clamp(value >> 16, 0, 255));
}

void Canvas::FillChroma(size_t row, size_t begin, size_t end, Color color) {
    if (row % 2 != 0 || row / 2 >= mHeight / 2) return;
    uint8_t* chroma = mChroma.data() + row / 2 * mWidth;
    for (size_t x = begin & ~size_t{1}; x + 1 < mWidth && x < end; x += 2) {
        chroma[x] = color.u;
        chroma[x + 1] = color.v;
    }
}

}  // namespace zarvo::host
