#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/stream/picture/Shapes.h"
#include "host/stream/scene/Color.h"

namespace zarvo::host {

/** A colour whose luma may change over the shape: `color` is that of the shape's middle. */
struct Ink {
    Color color;
    /** Change of luma per pixel to the right and down. */
    float right = 0, down = 0;
};

/**
 * Draws into a 4:2:0 picture: `height` rows of `width` luma bytes, then half as many rows of the
 * same length with interleaved chroma pairs. Borrows the bytes; they are at least
 * width × height × 3 / 2. Shapes are in pixels and may lie partly or wholly outside; their luma
 * is smooth at the left and right edges.
 */
class Canvas {
  public:
    Canvas(std::span<uint8_t> pixels, size_t width, size_t height);

    /** Makes every pixel `color`, its luma varied by the sum of a row's and a column's share. */
    void FillShaded(Color color, std::span<const float> rowLuma, std::span<const float> columnLuma);
    void FillEllipse(const Ellipse& ellipse, const Ink& ink);
    /** Only what lies inside both. */
    void FillIntersection(const Ellipse& ellipse, const Ellipse& frame, const Ink& ink);
    /** Only what lies outside of `inner`, a smaller ellipse inside the outer one. */
    void FillRing(const Ellipse& outer, const Ellipse& inner, const Ink& ink);
    /** Corners in order; the shape is convex. */
    void FillPolygon(std::span<const Point> corners, const Ink& ink);
    void DrawLine(Point from, Point to, float thickness, const Ink& ink);
    /** Lines of `thickness` pixels inside the box's edge. */
    void DrawFrame(const Box& box, float thickness, Color color);

    size_t Width() const { return mWidth; }
    size_t Height() const { return mHeight; }

  private:
    /** Calls fill(row) for every row of the picture between the two. */
    template <typename Fill>
    void EachRow(float top, float bottom, Fill fill);
    void FillBox(const Box& box, Color color);
    /** Fills one row's span, cut to the picture; `middle` is where the ink's colour holds. */
    void FillRow(size_t row, const RowSpan& span, const Ink& ink, Point middle);
    void FillLuma(uint8_t* row, size_t begin, size_t end, float luma, float step);
    void FillChroma(size_t row, size_t begin, size_t end, Color color);

    std::span<uint8_t> mLuma;
    std::span<uint8_t> mChroma;
    size_t mWidth;
    size_t mHeight;
};

}  // namespace zarvo::host
