#pragma once

#include <string>

namespace zarvo::bench {

/** Ends the process, saying why on stderr: a figure of half a measurement would mislead. */
[[noreturn]] void Fail(const std::string& why);

/** Ends the process unless the condition holds. */
inline void Require(bool condition, const char* why) {
    if (!condition) Fail(why);
}

}  // namespace zarvo::bench
