#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {

/** From 0 to 1 while `share` does the same, beginning and ending at rest. */
inline float Ease(double share) {
    const double x = std::clamp(share, 0.0, 1.0);
    return static_cast<float>(x * x * (3 - 2 * x));
}

/** A sine of as many whole turns as there are, between -1 and 1; also of very many. */
inline float Wave(double turns) {
    return static_cast<float>(std::sin(2 * std::numbers::pi * (turns - std::floor(turns))));
}

/** `from` at share 0, `to` at share 1. */
inline float Between(float from, float to, float share) {
    return from + (to - from) * share;
}

}  // namespace zarvo::host
