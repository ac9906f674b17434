#include "host/log/LogFormat.h"

#include <android/log.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace zarvo::host {
namespace {

std::string FormatPrefix(const LogLine& line, pid_t process) {
    using std::chrono::floor;
    const auto seconds = floor<std::chrono::seconds>(line.time);
    const auto millis = floor<std::chrono::milliseconds>(line.time - seconds).count();
    const std::time_t time = std::chrono::system_clock::to_time_t(seconds);
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%02d-%02d %02d:%02d:%02d.%03d %5d %5d %c ",
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(millis), process, line.thread, PriorityLetter(line.priority));
    return text.data() + line.tag + ": ";
}

}  // namespace

char PriorityLetter(int priority) {
    constexpr std::string_view kLetters = "??VDIWEF";
    const auto index = static_cast<size_t>(priority);
    return priority >= 0 && index < kLetters.size() ? kLetters[index] : '?';
}

std::string FormatLogLine(const LogLine& line, pid_t process) {
    const std::string prefix = FormatPrefix(line, process);
    std::string_view rest = line.message;
    while (rest.ends_with('\n'))
        rest.remove_suffix(1);
    std::string text;
    do {
        const std::string_view first = rest.substr(0, rest.find('\n'));
        text.append(prefix).append(first).append("\n");
        rest.remove_prefix(std::min(first.size() + 1, rest.size()));
    } while (!rest.empty());
    return text;
}

}  // namespace zarvo::host
