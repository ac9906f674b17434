#include "bench/Options.h"

#include <cstdio>
#include <string_view>

namespace zarvo::bench {

namespace {

struct Text {
    std::string_view name;
    std::string Options::*value;
};
constexpr Text kTexts[] = {{"--only", &Options::only},
                           {"--json", &Options::json},
                           {"--docs", &Options::docs},
                           {"--role", &Options::role}};

const Text* Find(std::string_view name) {
    for (const Text& text : kTexts)
        if (text.name == name) return &text;
    return nullptr;
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        const Text* const text = Find(argument);
        if (argument == "--quick") {
            options.quick = true;
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
