#include "host/demo/Narrator.h"

#include <cstdio>
#include <thread>

#include <unistd.h>

#include "host/log/LogFormat.h"

namespace zarvo::host::demo {
namespace {

constexpr char kBold[] = "\033[1m";
constexpr char kDim[] = "\033[2m";
constexpr char kRed[] = "\033[31m";
constexpr char kPlain[] = "\033[0m";

bool IsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

}  // namespace

Narrator::Narrator(std::chrono::milliseconds pause)
    : mPause(pause),
      mColours(IsTerminal()),
      mTap([this](const LogLine& line) { PrintLog(line); }) {}

void Narrator::Step(std::string_view title) {
    std::this_thread::sleep_for(mPause);
    std::lock_guard lock(mMutex);
    Print(kBold, "\n" + std::to_string(++mSteps) + ". " + std::string(title));
}

void Narrator::Remark(std::string_view text) {
    std::lock_guard lock(mMutex);
    Print("", "   " + std::string(text));
}

void Narrator::Tell(std::string_view who, std::string_view what) {
    std::lock_guard lock(mMutex);
    Print("", "   " + std::string(who) + ": " + std::string(what));
}

void Narrator::Check(bool holds, std::string_view what) {
    std::lock_guard lock(mMutex);
    ++mChecks;
    if (holds) return;
    ++mFailures;
    Print(kRed, "   NOT AS IT SHOULD BE: " + std::string(what));
}

int Narrator::Checks() {
    std::lock_guard lock(mMutex);
    return mChecks;
}

int Narrator::Failures() {
    std::lock_guard lock(mMutex);
    return mFailures;
}

std::map<char, int> Narrator::LogLines() {
    std::lock_guard lock(mMutex);
    return mLogLines;
}

void Narrator::PrintLog(const LogLine& line) {
    std::string text = FormatLogLine(line, getpid());
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    std::lock_guard lock(mMutex);
    ++mLogLines[PriorityLetter(line.priority)];
    Print(kDim, "      | " + text);
}

void Narrator::Print(std::string_view colour, std::string_view text) const {
    const bool coloured = mColours && !colour.empty();
    std::printf("%s%.*s%s\n", coloured ? std::string(colour).c_str() : "",
                static_cast<int>(text.size()), text.data(), coloured ? kPlain : "");
    std::fflush(stdout);
}

}  // namespace zarvo::host::demo
