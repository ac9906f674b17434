#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/stream/FaceLayout.h"

namespace zarvo::host {

/** A colour: luma, and two chroma values around 128. */
struct Color {
    uint8_t y = 0, u = 128, v = 128;

    /** The same colour in other light. */
    Color Lit(float light) const;
};

/** An ellipse in pixels, turned clockwise by `angle` degrees. */
struct Ellipse {
    Point centre;
    float halfWidth = 0, halfHeight = 0;
    float angle = 0;
};

/** The number nearest to `value` that fits a byte. */
uint8_t ToByte(float value);

/**
 * Draws into a 4:2:0 picture: `height` rows of `width` luma bytes, then half as many rows of the
 * same length with interleaved chroma pairs. Borrows the bytes; they are at least
 * width × height × 3 / 2. Shapes may lie partly or wholly outside.
 */
class Canvas {
  public:
    Canvas(std::span<uint8_t> pixels, size_t width, size_t height);

    /** Makes every pixel `color`, its luma varied by the sum of a row's and a column's share. */
    void FillShaded(Color color, std::span<const float> rowLuma, std::span<const float> columnLuma);
    void FillEllipse(const Ellipse& ellipse, Color color);
    /** Lines of `thickness` pixels inside the box's edge. */
    void DrawFrame(const Box& box, float thickness, Color color);

    size_t Width() const { return mWidth; }
    size_t Height() const { return mHeight; }

  private:
    void FillBox(const Box& box, Color color);
    /** Fills one row from `left` to `right`, cut to the picture. */
    void FillRow(size_t row, float left, float right, Color color);

    std::span<uint8_t> mLuma;
    std::span<uint8_t> mChroma;
    size_t mWidth;
    size_t mHeight;
};

}  // namespace zarvo::host
