#include "bench/Figures.h"

namespace zarvo::bench {

double Curve::Slope(double Point::*value) const {
    const auto count = static_cast<double>(points.size());
    double meanSize = 0;
    double meanValue = 0;
    for (const Point& point : points) {
        meanSize += point.size / count;
        meanValue += point.*value / count;
    }
    double both = 0;
    double square = 0;
    for (const Point& point : points) {
        both += (point.size - meanSize) * (point.*value - meanValue);
        square += (point.size - meanSize) * (point.size - meanSize);
    }
    return square > 0 ? both / square : 0;
}

}  // namespace zarvo::bench
