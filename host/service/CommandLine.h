#pragma once

#include <optional>
#include <string>

namespace zarvo::host {

/** What the service's command line asks for. */
struct ServiceOptions {
    /** A recording to play in place of the simulated scene; none if empty. */
    std::string replay;
    /** Play it again and again. */
    bool replayLoop = false;
    /** Set when there is nothing to serve, and all is said: the exit status. */
    std::optional<int> exitStatus;
};

/** Prints help, version and errors itself. */
ServiceOptions ParseCommandLine(int argc, char** argv);

}  // namespace zarvo::host
