#include "host/stream/scene/Point.h"

#include <cmath>

namespace zarvo::host {

Point Turned(Point point, float degrees, Point around) {
    const float c = std::cos(Radians(degrees));
    const float s = std::sin(Radians(degrees));
    const float x = point.x - around.x;
    const float y = point.y - around.y;
    return {around.x + x * c - y * s, around.y + x * s + y * c};
}

}  // namespace zarvo::host
