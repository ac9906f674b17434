#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zarvo::host::ctl {

/** A grey picture, borrowed: rows of 8-bit pixels. No side is 0 or above 16384. */
struct GreyImage {
    uint32_t width = 0;
    uint32_t height = 0;
    /** Bytes from row to row; at least the width. */
    int32_t stride = 0;
    /** At least stride * height bytes. */
    std::span<const uint8_t> pixels;
};

/** The picture as the bytes of a PNG file; empty, and a reason, if that cannot be. */
std::vector<uint8_t> EncodePng(const GreyImage& image, std::string& error);

}  // namespace zarvo::host::ctl
