#pragma once

#include <algorithm>
#include <cstdint>

namespace zarvo::host {

/** The number nearest to `value` that fits a byte. */
constexpr uint8_t ToByte(float value) {
    return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F));
}

/** A colour: luma, and two chroma values around 128, all of full range. */
struct Color {
    uint8_t y = 0, u = 128, v = 128;

    static constexpr Color FromRgb(int red, int green, int blue) {
        const auto r = static_cast<float>(red);
        const auto g = static_cast<float>(green);
        const auto b = static_cast<float>(blue);
        return {ToByte(0.299F * r + 0.587F * g + 0.114F * b),
                ToByte(128 - 0.169F * r - 0.331F * g + 0.500F * b),
                ToByte(128 + 0.500F * r - 0.419F * g - 0.081F * b)};
    }
    /** The same colour in other light: 1 changes nothing, 0 is dark. */
    constexpr Color Lit(float light) const {
        const auto chroma = [light](uint8_t value) {
            return ToByte(128 + light * (static_cast<float>(value) - 128));
        };
        return {ToByte(static_cast<float>(y) * light), chroma(u), chroma(v)};
    }
};

}  // namespace zarvo::host
