#include "bench/Session.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>

#include "bench/Fail.h"

namespace zarvo::bench {

namespace {

/** Shows nothing: the table is made of the figures. */
class SilentReporter : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run>& /*runs*/) override {}
};

void Register(const Row& row, const Pace& pace, bool quick, Figures& figures) {
    const auto measure = [&row, &figures, pace, quick](benchmark::State& state) {
        std::fprintf(stderr, "%s\n", row.name.c_str());
        for ([[maybe_unused]] auto _ : state) {
            state.SetIterationTime(0);
            Run run(row.name, pace, quick, state, figures);
            row.measure(run);
        }
    };
    benchmark::RegisterBenchmark(row.name.c_str(), measure)->Iterations(1)->UseManualTime();
}

}  // namespace

Figures MeasureAll(const RowList& rows, const Pace& pace, bool quick, const Conditions& conditions,
                   const std::string& json) {
    Figures figures;
    for (const Row& row : rows)
        Register(row, pace, quick, figures);
    for (const auto& [name, value] : conditions)
        benchmark::AddCustomContext(name, value);
    std::string program = "aon-bench";
    std::string out = "--benchmark_out=" + json;
    std::array<char*, 3> arguments{program.data(), out.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments.data());
    SilentReporter silent;
    Require(benchmark::RunSpecifiedBenchmarks(&silent) == rows.size(), "not all rows were run");
    benchmark::Shutdown();
    return figures;
}

}  // namespace zarvo::bench
