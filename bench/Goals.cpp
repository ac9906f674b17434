#include "bench/Goals.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>

#include "bench/Records.h"

namespace zarvo::bench {

namespace {

using enum Goal::Kind;

/** The arrays of an event's results, and their list. */
constexpr double kAllocations = 5 + 1;
constexpr double kClients = 1;

/** Bytes of an event's results, each once, and of their list. */
constexpr double kEventBytes = k640x480.ImageBytes() +
                               (k640x480.fusionItems * 20 + 14 + 6) * sizeof(float) + 128 +
                               14 * sizeof(aidl::vendor::zarvo::hardware::camera::aon::AONResult);
/** A node of the registry's map, roughly. */
constexpr double kSnapshotBytes = kClients * 64;

constexpr Goal Between(const char* row, double least, double andAtMost) {
    return {row, "", kNumber, least + andAtMost, {}, least};
}

constexpr Goal Exactly(const char* row, double number) {
    return Between(row, number, 0);
}

const Goal kGoals[] = {
        {"conversion/640x480/cold", "fresh vector", kAtMost, 1.10, 1.03},
        {"conversion/640x480/warm", "naive, two copies", kTimesFaster, 1.6, 2.0},
        {"conversion/640x480/cold", "naive, two copies", kTimesFaster, 1.25, 1.4},
        Exactly("counts/conversion/main thread/allocations", kAllocations),
        Exactly("counts/conversion/callback thread/allocations", kAllocations),
        Exactly("counts/conversion/main thread/bytes asked for", kEventBytes),
        Exactly("counts/conversion/callback thread/bytes asked for", kEventBytes),
        Between("counts/whole event/main thread/allocations", kAllocations, kClients),
        Between("counts/whole event/callback thread/allocations", kAllocations, kClients),
        Between("counts/whole event/main thread/bytes asked for", kEventBytes, kSnapshotBytes),
        Between("counts/whole event/callback thread/bytes asked for", kEventBytes, kSnapshotBytes),
        {"counts/conversion/main thread/page faults", "", kNumber, 0, {}},
        {"counts/conversion/callback thread/page faults", "", kNumber, 0, {}},
        {"counts/whole event/main thread/page faults", "", kNumber, 0, {}},
        {"counts/whole event/callback thread/page faults", "", kNumber, 0, {}},
        {"event/640x480", "F0: raw socket", kAtMost, 2.0, 1.6},
        {"event/64 bytes", "F0: raw socket", kAtMost, 1.6, 1.3},
        {"event/640x480", "sd-bus", kTimesFaster, 1.3, 2.0},
        {"memory/640x480, 30 per second/page faults", "", kNumber, 0, {}},
        {"memory/growth over a million events/heap", "", kNumber, 0, {}},
};

}  // namespace

double Goal::Reached(const Figure& figure) const {
    switch (kind) {
        case kAtMost:
            return figure.ratio;
        case kTimesFaster:
            return 1 / figure.ratio;
        default:
            return figure.ours;
    }
}

bool Goal::Reaches(const Figure& figure, double bound) const {
    const double reached = Reached(figure);
    if (kind == kNumber && reached < least) return false;
    return kind == kTimesFaster ? reached >= bound : reached <= bound;
}

std::string Goal::Text(double value) const {
    char text[32];
    std::snprintf(text, sizeof(text), kind == kNumber ? "%.6g" : "%.2f", value);
    return kind == kTimesFaster ? std::string(text) + " times faster" : text;
}

const Goal* GoalOf(const Figure& figure) {
    const auto* const found =
            std::find_if(std::begin(kGoals), std::end(kGoals), [&figure](const Goal& goal) {
                return figure.row == goal.row && figure.against == goal.against;
            });
    return found == std::end(kGoals) ? nullptr : found;
}

std::span<const Goal> AllGoals() {
    return kGoals;
}

}  // namespace zarvo::bench
