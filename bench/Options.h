#pragma once

#include <optional>
#include <string>

namespace zarvo::bench {

/** What the command line asks for. */
struct Options {
    bool quick = false;
    /** Fail when a figure that is counted, not timed, misses its goal. */
    bool check = false;
    /** The beginning of the names of the rows that run; empty for all. */
    std::string only;
    std::string json = "bench.json";
    /** Where the page and the plots go; empty for nowhere. */
    std::string docs;
    /** What this process is in place of the benchmark; empty for that itself. */
    std::string role;
};

/** The options, or nothing when an argument is wrong, which is then said on stderr. */
std::optional<Options> ParseOptions(int argc, char** argv);

}  // namespace zarvo::bench
