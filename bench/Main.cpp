// The benchmark; started once more by itself, it is the other end of a pair.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <malloc.h>
#include <unistd.h>

#include "bench/BusPair.h"
#include "bench/Conditions.h"
#include "bench/DroppedLog.h"
#include "bench/EventPair.h"
#include "bench/Fail.h"
#include "bench/Goals.h"
#include "bench/Options.h"
#include "bench/Plot.h"
#include "bench/RawPair.h"
#include "bench/Report.h"
#include "bench/Rows.h"
#include "bench/Session.h"

namespace zarvo::bench {

void Fail(const std::string& why) {
    std::fprintf(stderr, "aon-bench: %s\n", why.c_str());
    _exit(EXIT_FAILURE);
}

namespace {

constexpr int kMisuse = 2;
constexpr int kLargestBlock = 16 << 20;
constexpr int kMostKept = 64 << 20;
constexpr Pace kQuickPace{.rounds = 9, .block = std::chrono::microseconds(1500)};

/** Lets the allocator keep what was freed, at both ends of every pair. Otherwise it hands large
 * blocks back to the system now and then, as its history wills, and races tell of page faults. */
void KeepFreedMemory() {
    mallopt(M_MMAP_THRESHOLD, kLargestBlock);
    mallopt(M_TRIM_THRESHOLD, kMostKept);
}

struct Role {
    const char* name;
    int (*serve)();
};
constexpr Role kRoles[] = {
        {"client", &ClientProcess::Serve},
        {"raw-buffer", [] { return ServeRaw(RawPair::Landing::kBuffer); }},
        {"raw-vector", [] { return ServeRaw(RawPair::Landing::kVector); }},
        {"bus", &ServeBus},
};

int Play(const std::string& role) {
    for (const Role& known : kRoles)
        if (role == known.name) return known.serve();
    return kMisuse;
}

RowList RowsFor(const Options& options) {
    RowList all;
    for (const auto add : {AddConversionRows, AddCountRows, AddRoomRows, AddEventRows,
                           AddOperationRows, AddGrowthRows, AddMemoryRows})
        add(all);
    RowList chosen;
    for (const Row& row : all) {
        if (!row.name.starts_with(options.only)) continue;
        if (!options.quick || !row.isLong) chosen.push_back(row);
    }
    return chosen;
}

void Write(const std::string& path, const std::string& text) {
    std::ofstream file(path);
    file << text;
    file.close();
    if (!file) Fail("cannot write " + path);
}

void WriteDocs(const std::string& folder, const Conditions& conditions, const Figures& figures) {
    Write(folder + "/figures.md", MarkdownOf(conditions, figures));
    for (const Curve& curve : figures.curves)
        Write(folder + '/' + PlotName(curve), PlotOf(curve));
}

/** Whether what was counted, not timed, reaches its goals. */
bool CountsHold(const Figures& figures) {
    return std::all_of(figures.figures.begin(), figures.figures.end(), [](const Figure& figure) {
        const Goal* const goal = GoalOf(figure);
        return goal == nullptr || goal->kind != Goal::Kind::kNumber || goal->IsReachedBy(figure);
    });
}

int Measure(const Options& options) {
    const RowList rows = RowsFor(options);
    if (rows.empty()) {
        std::fprintf(stderr, "aon-bench: no row begins with '%s'\n", options.only.c_str());
        return kMisuse;
    }
    const Pace pace = options.quick ? kQuickPace : Pace();
    const Conditions conditions = ConditionsOf(PinToOneCore(), pace);
    const RuntimeFolder folder;
    const Figures figures = MeasureAll(rows, pace, options.quick, conditions, options.json);
    std::printf("%s\n%s", TextOf(conditions).c_str(), TextOf(figures).c_str());
    if (!options.docs.empty()) WriteDocs(options.docs, conditions, figures);
    return options.check && !CountsHold(figures) ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

}  // namespace zarvo::bench

int main(int argc, char** argv) {
    using namespace zarvo::bench;
    const std::optional<Options> options = ParseOptions(argc, argv);
    if (!options) return kMisuse;
    KeepFreedMemory();
    DropLog();
    return options->role.empty() ? Measure(*options) : Play(options->role);
}
