#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

namespace zarvo::host {

/** One line as a program logged it. */
struct LogLine {
    /** One of android_LogPriority. */
    int priority = 0;
    std::string tag;
    std::string message;
    std::chrono::system_clock::time_point time;
    /** The thread that logged it. */
    pid_t thread = 0;
};

}  // namespace zarvo::host
