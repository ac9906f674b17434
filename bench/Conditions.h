#pragma once

#include "bench/Race.h"
#include "bench/Report.h"

namespace zarvo::bench {

/** Keeps this process, and those it starts, on one processor: the last one that it may use.
 * Gives its number. */
int PinToOneCore();

/** What the machine, the build and this run are, as they stand now. */
Conditions ConditionsOf(int core, const Pace& pace);

}  // namespace zarvo::bench
