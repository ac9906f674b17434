#pragma once

#include <string>

#include "bench/Figures.h"
#include "bench/Race.h"
#include "bench/Report.h"
#include "bench/Rows.h"

namespace zarvo::bench {

/**
 * Measures the rows one after the other as benchmarks of Google Benchmark, which writes them to the
 * file `json`, with the conditions; says on stderr which one runs. Each is one iteration, which
 * runs its own rounds: contestants must alternate in blocks shorter than a benchmark's repetition.
 */
Figures MeasureAll(const RowList& rows, const Pace& pace, bool quick, const Conditions& conditions,
                   const std::string& json);

}  // namespace zarvo::bench
