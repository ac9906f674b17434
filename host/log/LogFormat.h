#pragma once

#include <string>

#include "host/log/LogLine.h"

namespace zarvo::host {

/** V, D, I, W, E or F; '?' for a number that is no priority. */
char PriorityLetter(int priority);

/**
 * The line in logcat's "threadtime" form, in UTC and ended by a newline:
 *
 *     11-30 23:59:58.123  1234  1240 I Tag: message
 *
 * A message of several lines gives as many, each with the whole prefix; newlines at the end of
 * the message add none. A pure function.
 */
std::string FormatLogLine(const LogLine& line, pid_t process);

}  // namespace zarvo::host
