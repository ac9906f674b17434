#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zarvo::bench {

/** How long a measurement takes. */
struct Pace {
    /** Rounds of a race; the medians are over these. */
    size_t rounds = 31;
    /** What one contestant runs for before it is the next one's turn. */
    std::chrono::microseconds block{4000};
};

/** One way of doing a job. */
struct Contestant {
    std::string name;
    /** Does the job that often. */
    std::function<void(size_t times)> run;
};

/** Does `job` as often as it is told. */
template <typename Job>
std::function<void(size_t)> Repeated(Job job) {
    return [job = std::move(job)](size_t times) {
        for (size_t i = 0; i < times; ++i)
            job();
    };
}

/** What a race came to, by contestant. */
struct RaceResult {
    /** Nanoseconds for the job once: the median over the rounds. */
    std::vector<double> nanoseconds;
    /** The first contestant's time over this one's: the median of the rounds' ratios. */
    std::vector<double> ratios;
};

/** The middle of the values, of which there is at least one; the upper one of two. */
double Median(std::vector<double> values);

/**
 * Runs the contestants in turn, each for a block, round after round, and lets another one begin
 * each round; what disturbs the machine meanwhile then meets all of them. How often the job is
 * done in a block is found out before.
 */
RaceResult RunRace(const std::vector<Contestant>& contestants, const Pace& pace);

}  // namespace zarvo::bench
