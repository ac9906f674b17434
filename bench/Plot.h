#pragma once

#include <string>

#include "bench/Figures.h"

namespace zarvo::bench {

/** A picture of the curve beside its floor's, as SVG. */
std::string PlotOf(const Curve& curve);

}  // namespace zarvo::bench
