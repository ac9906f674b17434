#include "bench/Options.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace zarvo::bench {

namespace {

struct Switch {
    std::string_view name;
    bool Options::*value;
};
constexpr Switch kSwitches[] = {{"--quick", &Options::quick}, {"--check", &Options::check}};

struct Text {
    std::string_view name;
    std::string Options::*value;
};
constexpr Text kTexts[] = {{"--only", &Options::only},
                           {"--json", &Options::json},
                           {"--docs", &Options::docs},
                           {"--role", &Options::role}};

template <typename Table>
auto Find(const Table& table, std::string_view name) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [name](const auto& row) { return row.name == name; });
    return found == std::end(table) ? nullptr : &*found;
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        const Text* const text = Find(kTexts, argument);
        const Switch* const option = Find(kSwitches, argument);
        if (option != nullptr) {
            options.*option->value = true;
        } else if (text != nullptr && i + 1 < argc) {
            options.*text->value = argv[++i];
        } else {
            std::fprintf(stderr, "aon-bench: %s '%s'\n",
                         text == nullptr ? "unknown argument" : "no value after", argv[i]);
            return std::nullopt;
        }
    }
    return options;
}

}  // namespace zarvo::bench
