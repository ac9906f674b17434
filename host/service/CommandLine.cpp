#include "host/service/CommandLine.h"

#include <cstdio>
#include <cstdlib>

#include "host/programs/Arguments.h"

namespace zarvo::host {
namespace {

constexpr char kName[] = "vendor.zarvo.hardware.camera.aon-service";
constexpr int kMisused = 2;

constexpr Option kOptions[] = {
        {"--replay", "FILE", ""},
        {"--replay-loop", "", ""},
        {"--help", "", ""},
        {"--version", "", ""},
};

constexpr char kHelp[] =
        "\n\n"
        "Serves the always-on camera on a simulated sensor, until SIGTERM or SIGINT.\n\n"
        "  --replay FILE   play what `aonctl record` wrote in place of the simulated scene:\n"
        "                  each event once, at its recorded interval, while the stream runs\n"
        "  --replay-loop   begin again after the last event\n"
        "  --help          print this\n"
        "  --version       print the version\n\n"
        "AON_RUNTIME_DIR names another directory for the services' sockets.\n\n"
        "Exit status: 0 when it was told to end, 1 when it could not serve or the recording\n"
        "cannot be played, 2 for a bad command line.\n";

ServiceOptions Ended(int status) {
    ServiceOptions options;
    options.exitStatus = status;
    return options;
}

ServiceOptions Misuse(const std::string& error) {
    std::fprintf(stderr, "%s: %s\nTry '%s --help'.\n", kName, error.c_str(), kName);
    return Ended(kMisused);
}

}  // namespace

ServiceOptions ParseCommandLine(int argc, char** argv) {
    std::vector<std::string_view> words;
    for (int i = 1; i < argc; ++i)
        words.push_back(argv[i] == std::string_view("-h") ? "--help" : argv[i]);
    Arguments arguments(words, kOptions);
    if (arguments.Has("--help")) {
        std::printf("usage: %s [OPTION]...%s", kName, kHelp);
        return Ended(EXIT_SUCCESS);
    }
    if (arguments.Has("--version")) {
        std::printf("%s %s\n", kName, AON_VERSION);
        return Ended(EXIT_SUCCESS);
    }
    ServiceOptions options;
    options.replay = arguments.Value("--replay");
    options.replayLoop = arguments.Has("--replay-loop");
    if (!arguments.Words().empty()) {
        arguments.SetError("too much: " + std::string(arguments.Words().front()));
    }
    if (options.replay.empty() && arguments.Has("--replay")) {
        arguments.SetError("--replay wants FILE");
    }
    if (options.replay.empty() && options.replayLoop) {
        arguments.SetError("--replay-loop wants --replay");
    }
    return arguments.Error().empty() ? options : Misuse(arguments.Error());
}

}  // namespace zarvo::host
