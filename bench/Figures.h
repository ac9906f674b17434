#pragma once

#include <string>
#include <vector>

namespace zarvo::bench {

/** One line of the result: what was measured, and against what. */
struct Figure {
    std::string row = {};
    /** What ours is compared with; empty for a figure that stands alone. */
    std::string against = {};
    double ours = 0;
    double theirs = 0;
    /** Ours over theirs; 0 for a figure that stands alone. */
    double ratio = 0;
    std::string unit = "ns";
};

/** How a cost grows with a size. */
struct Curve {
    struct Point {
        double size;
        double ours;
        double floor;
    };

    std::string row = {};
    std::string title = {};
    /** Of the sizes. */
    std::string unit = {};
    std::string floorName = {};
    std::vector<Point> points = {};  // nanoseconds

    double OurSlope() const { return Slope(&Point::ours); }
    double FloorSlope() const { return Slope(&Point::floor); }

  private:
    /** By least squares; nanoseconds for one more of the unit. */
    double Slope(double Point::*value) const;
};

/** All that a run of the benchmark came to, in the order of its rows. */
struct Figures {
    std::vector<Figure> figures;
    std::vector<Curve> curves;
};

}  // namespace zarvo::bench
