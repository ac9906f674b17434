// How the cost of an event grows with what it carries, and what the switches for debugging cost.

#include <cutils/properties.h>

#include <memory>

#include "bench/DebugRows.h"
#include "bench/EventPair.h"
#include "bench/Floors.h"
#include "bench/RawPair.h"
#include "bench/Records.h"
#include "bench/Rows.h"
#include "bench/Sinks.h"

namespace zarvo::bench {

namespace {

constexpr uint32_t kFusionService = 1;
constexpr uint32_t kMostItems = 30;

/** The sizes between none and the largest image. */
std::vector<Shape> ImageShapes(bool quick) {
    const uint32_t step = quick ? 384 : 96;
    std::vector<Shape> shapes;
    for (uint32_t height = 0; height <= k640x768.height; height += step)
        shapes.push_back({.height = height});
    return shapes;
}

Curve::Point Point(double size, const std::vector<Contestant>& contestants, const Pace& pace) {
    const RaceResult result = RunRace(contestants, pace);
    return {size, result.nanoseconds[0], result.nanoseconds[1]};
}

void GrowConversion(Run& run) {
    Curve curve{.title = "Conversion, by the image's size",
                .unit = "byte",
                .floorName = "fresh vector"};
    const auto translator = NewConversion();
    for (const Shape& shape : ImageShapes(run.IsQuick())) {
        Records records(shape, Records::Source::kCold);
        const Contestant ours{"ours", Repeated([&] { translator->onCallback(&records.Next()); })};
        const Contestant floor{"floor", Repeated([&] {
                                   CopyIntoFreshVector(ImageOf(records.Next(), shape.ImageBytes()));
                               })};
        curve.points.push_back(
                Point(static_cast<double>(shape.ImageBytes()), {ours, floor}, run.GetPace()));
    }
    run.Add(std::move(curve));
}

void GrowWholeEvent(Run& run) {
    Curve curve{.title = "Whole event, by the image's size",
                .unit = "byte",
                .floorName = "F0: raw socket"};
    EventPair pair;
    RawPair raw(RawPair::Landing::kBuffer);
    for (const Shape& shape : ImageShapes(run.IsQuick())) {
        Records records(shape, Records::Source::kCold);
        const size_t otherBytes = OtherBytesOf(records.Next());
        const Contestant ours{"ours", Repeated([&] { pair.Deliver(records.Next()); })};
        const Contestant floor{"floor", Repeated([&] {
                                   raw.Deliver(otherBytes,
                                               ImageOf(records.Next(), shape.ImageBytes()));
                               })};
        curve.points.push_back(
                Point(static_cast<double>(shape.ImageBytes()), {ours, floor}, run.GetPace()));
    }
    run.Add(std::move(curve));
}

void GrowFusion(Run& run) {
    Curve curve{.title = "Conversion, by the number of fusion items",
                .unit = "item",
                .floorName = "arrays alone"};
    const auto translator = NewConversion();
    for (uint32_t items = 0; items <= kMostItems; items += run.IsQuick() ? 15 : 5) {
        Shape shape = kNoImage;
        shape.serviceType = kFusionService;
        shape.fusionItems = items;
        Records records(shape, Records::Source::kWarm);
        const Contestant ours{"ours", Repeated([&] { translator->onCallback(&records.Next()); })};
        const Contestant floor{"floor", Repeated([&] {
                                   CopyArraysOf(kFusionService, items, records.Next().output);
                               })};
        curve.points.push_back(Point(items, {ours, floor}, run.GetPace()));
    }
    run.Add(std::move(curve));
}

}  // namespace

void AddGrowthRows(RowList& rows) {
    rows.push_back({"growth/image, conversion", GrowConversion});
    rows.push_back({"growth/image, whole event", GrowWholeEvent});
    rows.push_back({"growth/fusion items", GrowFusion});
    AddDebugRows(rows);
}

}  // namespace zarvo::bench
