#pragma once

#include <android/binder_auto_utils.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace zarvo::host::demo {

/** The numbers behind a command's name. */
using Numbers = std::span<const int64_t>;

/** Something that the director may ask of a process of the demo. */
struct Command {
    std::string_view name;
    /** How many numbers it takes. */
    size_t numbers;
    std::function<ndk::ScopedAStatus(Numbers)> run;
};

/**
 * Tells the director something: a line of the standard output. Thread-safe.
 *
 * @param kind a word: "ready" once, "ok" or "refused" for each command, others are facts.
 */
void Report(std::string_view kind, std::string_view text = {});

/**
 * Runs the commands that come as lines of the standard input, a name and its numbers, until that
 * ends. Each is answered, but for one that finds the service gone: the director hears of that
 * itself.
 *
 * @return the program's exit status.
 */
int ServeCommands(const std::vector<Command>& commands);

}  // namespace zarvo::host::demo
