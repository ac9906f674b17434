// The operations of a client's life, in this process and from another one.

#include <chrono>
#include <vector>

#include "bench/EventPair.h"
#include "bench/RawPair.h"
#include "bench/Rows.h"

namespace zarvo::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr uint64_t kLives = 10;

/** Nanoseconds of a raw round trip. */
double TimeOfPing(RawPair& raw) {
    const Clock::time_point begin = Clock::now();
    for (size_t i = 0; i < kLives; ++i)
        raw.Ping();
    return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / kLives;
}

/** Nanoseconds of each operation, by round. */
struct Rounds {
    std::vector<OperationTimes> local;
    std::vector<OperationTimes> remote;
    std::vector<double> pings;
};

Rounds Measure(size_t rounds) {
    Client local(TheService());
    ClientProcess remote;
    RawPair raw(RawPair::Landing::kBuffer);
    Rounds measured;
    for (size_t round = 0; round < rounds; ++round) {
        measured.local.push_back(local.Live(kLives));
        measured.remote.push_back(remote.Live(kLives));
        measured.pings.push_back(TimeOfPing(raw));
    }
    return measured;
}

/** The middle of what `value` gives for each round. */
template <typename Value>
double MedianOf(size_t rounds, Value value) {
    std::vector<double> values;
    for (size_t round = 0; round < rounds; ++round)
        values.push_back(value(round));
    return Median(std::move(values));
}

void MeasureOperations(Run& run) {
    const size_t rounds = run.GetPace().rounds;
    const Rounds measured = Measure(rounds);
    const double ping = Median(measured.pings);
    for (size_t i = 0; i < kOperations.size(); ++i) {
        const auto local = [&](size_t round) { return measured.local[round][i] / kLives; };
        run.Add(std::string(kOperations[i]) + ", same process", MedianOf(rounds, local), "ns");
    }
    for (size_t i = 0; i < kOperations.size(); ++i) {
        const auto remote = [&](size_t round) { return measured.remote[round][i] / kLives; };
        const auto ratio = [&](size_t round) { return remote(round) / measured.pings[round]; };
        run.Compare(std::string(kOperations[i]) + ", another process", "raw round trip",
                    MedianOf(rounds, remote), ping, MedianOf(rounds, ratio));
    }
}

}  // namespace

void AddOperationRows(RowList& rows) {
    rows.push_back({"operations", MeasureOperations});
}

}  // namespace zarvo::bench
