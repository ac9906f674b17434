#include <cstdio>
#include <string_view>
#include <vector>

#include "host/demo/CommandLine.h"
#include "host/demo/Story.h"
#include "host/demo/remote/Remote.h"

int main(int argc, char** argv) {
    using namespace zarvo::host::demo;
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Options options = ParseCommandLine(arguments);
    if (options.help) {
        std::printf("%s", HelpText().data());
        return 0;
    }
    if (!options.error.empty()) {
        std::fprintf(stderr, "aon-demo: %s (try --help)\n", options.error.c_str());
        return 2;
    }
    if (options.role == Role::kClient) return RunClient();
    if (options.role == Role::kControls) return RunControls();
    return PlayStory(options) ? 0 : 1;
}
