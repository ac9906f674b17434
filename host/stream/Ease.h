#pragma once

#include <algorithm>

namespace zarvo::host {

/** From 0 to 1 while `share` does the same, beginning and ending at rest. */
inline float Ease(double share) {
    const double x = std::clamp(share, 0.0, 1.0);
    return static_cast<float>(x * x * (3 - 2 * x));
}

/** `from` at share 0, `to` at share 1. */
inline float Between(float from, float to, float share) {
    return from + (to - from) * share;
}

}  // namespace zarvo::host
