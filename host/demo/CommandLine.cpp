#include "host/demo/CommandLine.h"

#include "host/programs/Arguments.h"

namespace zarvo::host::demo {
namespace {

constexpr Option kOptions[] = {
        {"--seed", "NUMBER", ""}, {"--role", "ROLE", ""}, {"--quick", "", ""},
        {"-q", "", ""},           {"--verbose", "", ""},  {"-v", "", ""},
};

Role RoleOf(Arguments& arguments) {
    const std::string_view role = arguments.Value("--role");
    if (role == "client") return Role::kClient;
    if (role == "controls") return Role::kControls;
    if (arguments.Has("--role")) arguments.SetError("there is no such role");
    return Role::kDirector;
}

}  // namespace

Options ParseCommandLine(std::span<const std::string_view> words) {
    Arguments arguments(words, kOptions);
    if (!arguments.Words().empty())
        arguments.SetError("unknown word " + std::string(arguments.Words().front()));
    Options options;
    options.seed = static_cast<uint64_t>(arguments.Number("--seed", 1, 0, INT64_MAX));
    options.quick = arguments.Has("--quick") || arguments.Has("-q");
    options.verbose = arguments.Has("--verbose") || arguments.Has("-v");
    options.help = arguments.WantsHelp();
    options.role = RoleOf(arguments);
    options.error = arguments.Error();
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
