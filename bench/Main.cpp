// The benchmark; started once more by itself, it is the other end of a pair.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

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
    RuntimeFolder::RemoveAll();
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

RowList AllRows() {
    RowList all;
    for (const auto add : {AddConversionRows, AddCountRows, AddRoomRows, AddEventRows,
                           AddOperationRows, AddGrowthRows, AddMemoryRows})
        add(all);
    return all;
}

RowList RowsFor(const Options& options) {
    RowList rows = AllRows();
    std::erase_if(rows, [&options](const Row& row) {
        return !row.name.starts_with(options.only) || (options.quick && row.isLong);
    });
    return rows;
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

/** Whether a run with these options is to reach the goal, by a count and not by a clock. */
bool IsChecked(const Goal& goal, const Options& options) {
    const std::string_view name = goal.row;
    if (goal.kind != Goal::Kind::kNumber || !name.starts_with(options.only)) return false;
    const RowList rows = AllRows();
    return std::none_of(rows.begin(), rows.end(), [&](const Row& row) {
        return options.quick && row.isLong && name.starts_with(row.name);
    });
}

/** A goal that no figure bears the name of is missed, too. */
bool CountsHold(const Figures& figures, const Options& options) {
    const std::span<const Goal> goals = AllGoals();
    return std::all_of(goals.begin(), goals.end(), [&](const Goal& goal) {
        if (!IsChecked(goal, options)) return true;
        const auto& all = figures.figures;
        const bool isReached = std::any_of(all.begin(), all.end(), [&goal](const Figure& figure) {
            return GoalOf(figure) == &goal && goal.IsReachedBy(figure);
        });
        if (!isReached) std::fprintf(stderr, "aon-bench: missed: %s\n", goal.row);
        return isReached;
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
    return options.check && !CountsHold(figures, options) ? EXIT_FAILURE : EXIT_SUCCESS;
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
