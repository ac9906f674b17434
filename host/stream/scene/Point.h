#pragma once

#include <numbers>

namespace zarvo::host {

constexpr float Radians(float degrees) {
    return degrees * (std::numbers::pi_v<float> / 180);
}

/** A place in a picture: x to the right, y down. In pixels, unless it is said otherwise. */
struct Point {
    float x = 0;
    float y = 0;
};

/** The point turned clockwise. */
Point Turned(Point point, float degrees, Point around);

}  // namespace zarvo::host
