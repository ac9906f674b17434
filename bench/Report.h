#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bench/Figures.h"

namespace zarvo::bench {

/** Under what a run took place: names and values, in order. */
using Conditions = std::vector<std::pair<std::string, std::string>>;

/** One line for each condition. */
std::string TextOf(const Conditions& conditions);

/** The table of all figures, for a terminal. */
std::string TextOf(const Figures& figures);

/** The same as a page, with the plots, which lie beside it under PlotName. */
std::string MarkdownOf(const Conditions& conditions, const Figures& figures);

/** The name of a curve's file. */
std::string PlotName(const Curve& curve);

}  // namespace zarvo::bench
