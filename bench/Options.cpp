#include "bench/Options.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "host/programs/Arguments.h"

namespace zarvo::bench {

namespace {

using host::Arguments;
using host::Option;

constexpr Option kOptions[] = {
        {"--quick", "", ""},    {"--check", "", ""},         {"--only", "ROW", ""},
        {"--json", "FILE", ""}, {"--docs", "DIRECTORY", ""}, {"--role", "NAME", ""},
};

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + std::min(argc, 1), argv + argc);
    Arguments arguments(words, kOptions);
    if (!arguments.Words().empty())
        arguments.SetError("unknown word " + std::string(arguments.Words().front()));
    if (arguments.WantsHelp()) arguments.SetError("'./aon help bench' tells what it does");
    if (!arguments.Error().empty()) {
        std::fprintf(stderr, "aon-bench: %s\n", arguments.Error().c_str());
        return std::nullopt;
    }
    Options options;
    options.quick = arguments.Has("--quick");
    options.check = arguments.Has("--check");
    options.only = arguments.Value("--only");
    options.json = arguments.Value("--json", options.json);
    options.docs = arguments.Value("--docs");
    options.role = arguments.Value("--role");
    return options;
}

}  // namespace zarvo::bench
