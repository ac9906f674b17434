#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/Figures.h"
#include "bench/Race.h"

namespace benchmark {
class State;
}

namespace zarvo::bench {

/** What a row measures with, and where its figures go. */
class Run {
  public:
    Run(std::string row, const Pace& pace, bool quick, benchmark::State& state, Figures& figures)
        : mRow(std::move(row)), mPace(pace), mQuick(quick), mState(state), mFigures(figures) {}

    const Pace& GetPace() const { return mPace; }
    bool IsQuick() const { return mQuick; }

    /** A figure for the first contestant against each of the others; alone it stands alone. */
    void Race(const std::vector<Contestant>& contestants);
    /** A figure that stands alone. */
    void Add(const std::string& name, double value, const std::string& unit);
    /** A figure that was compared elsewhere. */
    void Compare(const std::string& name, const std::string& against, double ours, double theirs,
                 double ratio, const std::string& unit = "ns");
    /** A figure for the slope, and a plot. */
    void Add(Curve curve);

  private:
    void Add(Figure figure);

    const std::string mRow;
    const Pace mPace;
    const bool mQuick;
    benchmark::State& mState;
    Figures& mFigures;
};

/** One thing that is measured. Its name is "group/what". */
struct Row {
    std::string name;
    std::function<void(Run& run)> measure;
    /** Takes minutes, and is left out of a quick run. */
    bool isLong = false;
};

using RowList = std::vector<Row>;

// The groups. Each appends its rows.

void AddConversionRows(RowList& rows);
void AddCountRows(RowList& rows);
void AddRoomRows(RowList& rows);
void AddEventRows(RowList& rows);
void AddOperationRows(RowList& rows);
void AddGrowthRows(RowList& rows);
void AddMemoryRows(RowList& rows);

}  // namespace zarvo::bench
