#include "bench/Plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace zarvo::bench {

namespace {

constexpr double kWidth = 640;
constexpr double kHeight = 360;
constexpr double kLeft = 64;
constexpr double kTop = 40;
constexpr double kRight = kWidth - 24;
constexpr double kBottom = kHeight - 48;
constexpr int kSteps = 4;

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.6g", value);
    return text;
}

/** 1, 2 or 5 times a power of ten, such that a few of them reach `most`. */
double StepFor(double most) {
    const double raw = std::max(most, 1e-9) / kSteps;
    const double power = std::pow(10, std::floor(std::log10(raw)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (raw <= factor * power) return factor * power;
    return 10 * power;
}

/** Where sizes and microseconds lie in the picture. */
struct Scale {
    double mostSize = 0;
    double step = 0;
    double most = 0;

    explicit Scale(const Curve& curve) {
        for (const Curve::Point& point : curve.points) {
            mostSize = std::max(mostSize, point.size);
            most = std::max({most, point.ours / 1000, point.floor / 1000});
        }
        step = StepFor(most);
        most = std::ceil(most / step) * step;
    }
    double X(double size) const { return kLeft + size / mostSize * (kRight - kLeft); }
    double Y(double time) const { return kBottom - time / most * (kBottom - kTop); }
};

std::string TextAt(double x, double y, const char* anchor, const std::string& text) {
    return "<text x=\"" + Number(x) + "\" y=\"" + Number(y) + "\" text-anchor=\"" + anchor + "\">" +
           text + "</text>\n";
}

std::string LineFrom(double x1, double y1, double x2, double y2, const char* colour) {
    return "<line x1=\"" + Number(x1) + "\" y1=\"" + Number(y1) + "\" x2=\"" + Number(x2) +
           "\" y2=\"" + Number(y2) + "\" stroke=\"" + colour + "\"/>\n";
}

std::string Grid(const Scale& scale, const std::string& unit) {
    std::string svg;
    const auto steps = std::lround(scale.most / scale.step);
    for (long i = 0; i <= steps; ++i) {
        const double time = static_cast<double>(i) * scale.step;
        svg += LineFrom(kLeft, scale.Y(time), kRight, scale.Y(time), "#ddd");
        svg += TextAt(kLeft - 8, scale.Y(time) + 4, "end", Number(time));
    }
    svg += TextAt(kLeft - 8, kTop - 12, "end", "µs");
    svg += TextAt(kLeft, kBottom + 20, "middle", "0");
    svg += TextAt(kRight, kBottom + 20, "end", Number(scale.mostSize) + " × " + unit);
    return svg;
}

std::string Line(const Curve& curve, const Scale& scale, double Curve::Point::*value,
                 const char* colour) {
    std::string dots;
    std::string path = "<polyline fill=\"none\" stroke-width=\"2\" stroke=\"";
    path += std::string(colour) + "\" points=\"";
    for (const Curve::Point& point : curve.points) {
        const std::string x = Number(scale.X(point.size));
        const std::string y = Number(scale.Y(point.*value / 1000));
        path += x + ',' + y + ' ';
        dots += "<circle cx=\"" + x + "\" cy=\"" + y + "\" r=\"3\" fill=\"" + colour + "\"/>\n";
    }
    return path + "\"/>\n" + dots;
}

std::string Legend(double y, const char* colour, const std::string& text) {
    return LineFrom(kLeft + 16, y - 4, kLeft + 40, y - 4, colour) +
           TextAt(kLeft + 48, y, "start", text);
}

std::string Short(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.3g", value);
    return text;
}

std::string SlopeText(double slope, const std::string& unit) {
    constexpr std::pair<double, const char*> kUnits[] = {{1e6, " ms"}, {1e3, " µs"}};
    for (const auto& [size, name] : kUnits)
        if (std::abs(slope) >= size) return ", " + Short(slope / size) + name + " per " + unit;
    return ", " + Short(slope) + " ns per " + unit;
}

}  // namespace

std::string PlotOf(const Curve& curve) {
    constexpr const char* kOurs = "#0b62a4";
    constexpr const char* kFloor = "#999";
    const Scale scale(curve);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + Number(kWidth) + "\" height=\"" +
           Number(kHeight) + "\" font-family=\"sans-serif\" font-size=\"12\">\n" +
           "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n" +
           TextAt(kWidth / 2, 20, "middle", curve.title) + Grid(scale, curve.unit) +
           Line(curve, scale, &Curve::Point::floor, kFloor) +
           Line(curve, scale, &Curve::Point::ours, kOurs) +
           Legend(kTop + 20, kOurs, "ours" + SlopeText(curve.OurSlope(), curve.unit)) +
           Legend(kTop + 38, kFloor, curve.floorName + SlopeText(curve.FloorSlope(), curve.unit)) +
           "</svg>\n";
}

}  // namespace zarvo::bench
