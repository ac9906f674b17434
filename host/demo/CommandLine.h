#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zarvo::host::demo {

/** Which of the demo's processes this is. */
enum class Role { kDirector, kClient, kControls };

/** What the demo was asked for. */
struct Options {
    /** The simulated scene's random seed. */
    uint64_t seed = 1;
    /** Whether lines about single frames are logged. */
    bool verbose = false;
    /** Whether the story is told without pauses. */
    bool quick = false;
    bool help = false;
    /** The director starts the others itself. */
    Role role = Role::kDirector;
    /** What is wrong with the command line; empty when nothing is. */
    std::string error;
};

/** Reads the arguments behind the program's name. A pure function. */
Options ParseCommandLine(std::span<const std::string_view> arguments);

/** The help text. */
std::string_view HelpText();

}  // namespace zarvo::host::demo
