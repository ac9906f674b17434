#pragma once

#include <optional>
#include <span>
#include <string>

#include "bench/Figures.h"

namespace zarvo::bench {

/** What a figure is to reach. */
struct Goal {
    enum class Kind {
        /** The ratio is at most this. */
        kAtMost,
        /** Theirs over ours is at least this. */
        kTimesFaster,
        /** The figure itself is at most this, and no less than `least`. */
        kNumber,
    };

    const char* row;
    const char* against;
    Kind kind;
    double goal;
    std::optional<double> stretch;
    /** A number below this tells that not all was counted. */
    double least = 0;

    /** What the figure reached, in the goal's terms. */
    double Reached(const Figure& figure) const;
    bool IsReachedBy(const Figure& figure) const { return Reaches(figure, goal); }
    bool IsStretchedBy(const Figure& figure) const { return Reaches(figure, *stretch); }
    /** A bound of this goal, or what was reached, as text. */
    std::string Text(double value) const;

  private:
    bool Reaches(const Figure& figure, double bound) const;
};

/** The goal of a figure, or null. */
const Goal* GoalOf(const Figure& figure);

std::span<const Goal> AllGoals();

}  // namespace zarvo::bench
