#include "host/demo/CommandLine.h"

#include <charconv>

namespace zarvo::host::demo {
namespace {

bool ParseNumber(std::string_view text, uint64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

Options ParseCommandLine(std::span<const std::string_view> arguments) {
    Options options;
    while (!arguments.empty() && options.error.empty()) {
        const std::string_view argument = arguments.front();
        arguments = arguments.subspan(1);
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--verbose" || argument == "-v") {
            options.verbose = true;
        } else if (argument == "--quick" || argument == "-q") {
            options.quick = true;
        } else if (argument != "--seed") {
            options.error = "unknown argument: " + std::string(argument);
        } else if (arguments.empty() || !ParseNumber(arguments.front(), options.seed)) {
            options.error = "--seed wants a number";
        } else {
            arguments = arguments.subspan(1);
        }
    }
    return options;
}

std::string_view HelpText() {
    return "usage: aon-demo [--seed NUMBER] [--quick] [--verbose]\n"
           "\n"
           "Runs the always-on camera service with a simulated sensor and plays a client's whole\n"
           "life: faces that come and go, the camera taking the sensor, a second client, a\n"
           "client's death.\n"
           "\n"
           "  --seed NUMBER  another scene before the simulated sensor\n"
           "  --quick, -q    no pauses for the reader\n"
           "  --verbose, -v  log every frame, too (faces in numbers)\n"
           "  --help, -h     this text\n"
           "\n"
           "Exit status: 0 when all went as it should, 1 when not, 2 for a bad command line.\n";
}

}  // namespace zarvo::host::demo
