#include "bench/Rows.h"

#include <benchmark/benchmark.h>

#include <utility>

namespace zarvo::bench {

void Run::Race(const std::vector<Contestant>& contestants) {
    const RaceResult result = RunRace(contestants, mPace);
    mState.SetIterationTime(result.nanoseconds[0] * 1e-9);
    if (contestants.size() == 1) {
        Add({.row = mRow, .ours = result.nanoseconds[0]});
        return;
    }
    for (size_t i = 1; i < contestants.size(); ++i) {
        Add({.row = mRow,
             .against = contestants[i].name,
             .ours = result.nanoseconds[0],
             .theirs = result.nanoseconds[i],
             .ratio = result.ratios[i]});
    }
}

void Run::Add(const std::string& name, double value, const std::string& unit) {
    Add({.row = mRow + "/" + name, .ours = value, .unit = unit});
}

void Run::Compare(const std::string& name, const std::string& against, double ours, double theirs,
                  double ratio, const std::string& unit) {
    Add({.row = mRow + "/" + name,
         .against = against,
         .ours = ours,
         .theirs = theirs,
         .ratio = ratio,
         .unit = unit});
}

void Run::Add(Curve curve) {
    curve.row = mRow;
    const double ours = curve.OurSlope();
    const double floor = curve.FloorSlope();
    Add({.row = mRow,
         .against = curve.floorName,
         .ours = ours,
         .theirs = floor,
         .ratio = floor > 0 ? ours / floor : 0,
         .unit = "ns per " + curve.unit});
    mFigures.curves.push_back(std::move(curve));
}

void Run::Add(Figure figure) {
    const std::string name = figure.row.substr(mRow.size()) + figure.against;
    mState.counters[name + " ours"] = figure.ours;
    if (!figure.against.empty()) {
        mState.counters[name + " theirs"] = figure.theirs;
        mState.counters[name + " ratio"] = figure.ratio;
    }
    mFigures.figures.push_back(std::move(figure));
}

}  // namespace zarvo::bench
