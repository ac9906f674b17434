#include "bench/Race.h"

#include <algorithm>

namespace zarvo::bench {

namespace {

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

/** A job that never gets longer must not be repeated for ever. */
constexpr size_t kMostTimes = size_t{1} << 24;

double TimeOf(const Contestant& contestant, size_t times) {
    const Clock::time_point begin = Clock::now();
    contestant.run(times);
    return Nanoseconds(Clock::now() - begin).count();
}

/** How often the job is to be done to fill a block. */
size_t TimesOf(const Contestant& contestant, const Pace& pace) {
    const double block = Nanoseconds(pace.block).count();
    contestant.run(1);
    for (size_t times = 1; times < kMostTimes; times *= 2) {
        const double taken = TimeOf(contestant, times);
        if (taken < block / 2) continue;
        const double scaled = static_cast<double>(times) * block / taken;
        return std::max<size_t>(1, static_cast<size_t>(scaled));
    }
    return kMostTimes;
}

}  // namespace

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

RaceResult RunRace(const std::vector<Contestant>& contestants, const Pace& pace) {
    const size_t count = contestants.size();
    std::vector<size_t> times;
    for (const Contestant& contestant : contestants)
        times.push_back(TimesOf(contestant, pace));

    std::vector<std::vector<double>> taken(count);
    for (size_t round = 0; round < pace.rounds; ++round) {
        for (size_t turn = 0; turn < count; ++turn) {
            const size_t i = (round + turn) % count;
            taken[i].push_back(TimeOf(contestants[i], times[i]) / static_cast<double>(times[i]));
        }
    }
    RaceResult result;
    for (const std::vector<double>& rounds : taken) {
        std::vector<double> ratios;
        for (size_t round = 0; round < pace.rounds; ++round)
            ratios.push_back(taken[0][round] / rounds[round]);
        result.nanoseconds.push_back(Median(rounds));
        result.ratios.push_back(Median(std::move(ratios)));
    }
    return result;
}

}  // namespace zarvo::bench
