#include "host/demo/Narrator.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "host/programs/Lines.h"

namespace zarvo::host::demo {
namespace {

constexpr char kBold[] = "\033[1m";
constexpr char kDim[] = "\033[2m";
constexpr char kRed[] = "\033[31m";
constexpr char kPlain[] = "\033[0m";

bool IsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

/** The letter of a line's priority, its fifth field; nothing in a line of another form. */
std::string_view PriorityOf(std::string_view line) {
    std::string_view field;
    for (int count = 0; count < 5; ++count) {
        while (line.starts_with(' '))
            line.remove_prefix(1);
        field = TakeWord(line);
    }
    return field.size() == 1 ? field : std::string_view();
}

}  // namespace

Narrator::Narrator() : mColours(IsTerminal()) {}

void Narrator::Step(std::string_view title) {
    Print(kBold, "\n" + std::to_string(++mSteps) + ". " + std::string(title));
}

void Narrator::Remark(std::string_view text) {
    Print("", "   " + std::string(text));
}

void Narrator::Tell(std::string_view who, std::string_view what) {
    Print("", "   " + std::string(who) + ": " + std::string(what));
}

void Narrator::Log(std::string_view line) {
    for (const char letter : PriorityOf(line))
        ++mLogLines[letter];
    Print(kDim, "      | " + std::string(line));
}

void Narrator::Check(bool holds, std::string_view what) {
    ++mChecks;
    if (holds) return;
    ++mFailures;
    Print(kRed, "   NOT AS IT SHOULD BE: " + std::string(what));
}

void Narrator::Print(std::string_view colour, std::string_view text) {
    const bool coloured = mColours && !colour.empty();
    std::printf("%s%.*s%s\n", coloured ? std::string(colour).c_str() : "",
                static_cast<int>(text.size()), text.data(), coloured ? kPlain : "");
    if (std::fflush(stdout) != 0) mIsMute = true;
}

}  // namespace zarvo::host::demo
