#pragma once

#include <functional>
#include <memory>

#include "host/log/LogLine.h"

namespace zarvo::host {

/** Takes a log line. Called on the thread that logs, by several threads at once. */
using LogSink = std::function<void(const LogLine&)>;

/**
 * Takes over the log lines of the whole process, of every priority, from its construction to its
 * end; then the lines go where they went before. Taps nest: the newest one gets the lines, and
 * they must end in the reverse order of their making.
 *
 * Threads may log at any time, also while a tap comes or goes and while the process ends: the
 * sink is kept alive until every line handed to it is through, which can be a moment after the
 * tap's end. What a sink refers to must live as long; what a sink itself logs is dropped.
 *
 * For tests and for programs on Linux: the phone's liblog has another hook, and the library
 * itself never asks where its lines go.
 */
class LogTap {
  public:
    explicit LogTap(LogSink sink);
    ~LogTap();
    LogTap(const LogTap&) = delete;
    LogTap& operator=(const LogTap&) = delete;

  private:
    std::shared_ptr<const LogSink> mFormerSink;
    int mFormerPriority;
};

}  // namespace zarvo::host
