#include "host/demo/CommandLine.h"

#include <charconv>

namespace zarvo::host::demo {
namespace {

bool ParseNumber(std::string_view text, uint64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

bool ParseRole(std::string_view text, Role& role) {
    if (text != "client" && text != "controls") return false;
    role = text == "client" ? Role::kClient : Role::kControls;
    return true;
}

/** An argument with its value. */
void ParsePair(std::string_view name, std::string_view value, Options& options) {
    if (name == "--seed") {
        if (!ParseNumber(value, options.seed)) options.error = "--seed wants a number";
    } else if (name == "--role") {
        if (!ParseRole(value, options.role)) options.error = "there is no such role";
    } else {
        options.error = "unknown argument: " + std::string(name);
    }
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
        } else {
            const bool hasValue = !arguments.empty();
            ParsePair(argument, hasValue ? arguments.front() : std::string_view(), options);
            arguments = arguments.subspan(hasValue ? 1 : 0);
        }
    }
    return options;
}

std::string_view HelpText() {
    return "usage: aon-demo [--seed NUMBER] [--quick] [--verbose]\n"
           "\n"
           "Runs the always-on camera service with a simulated sensor and plays a client's whole\n"
           "life: faces that come and go, the camera taking the sensor, a second client, which is\n"
           "killed. Service and clients are processes of their own; none is left at the end.\n"
           "\n"
           "  --seed NUMBER  another scene before the simulated sensor\n"
           "  --quick, -q    no pauses for the reader\n"
           "  --verbose, -v  log every frame, too (faces in numbers)\n"
           "  --help, -h     this text\n"
           "\n"
           "Exit status: 0 when all went as it should, 1 when not, 2 for a bad command line.\n";
}

}  // namespace zarvo::host::demo
