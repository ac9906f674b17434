#include "host/soak/Report.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "host/soak/Interrupt.h"

namespace zarvo::host::soak {
namespace {

using std::chrono::steady_clock;

constexpr size_t kMostFindings = 5;
constexpr std::chrono::milliseconds kRefresh{100};
constexpr std::chrono::seconds kNewLine{10};

/** With a comma before every three digits. */
std::string Grouped(uint64_t number) {
    std::string text = std::to_string(number);
    for (size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, ",");
    return text;
}

/** A section that has not begun holds nothing. */
std::string Change(long before, long after) {
    if (after == 0) return "-";
    return Grouped(static_cast<uint64_t>(before)) + " > " + Grouped(static_cast<uint64_t>(after));
}

const char* Verdict(const Row& row) {
    if (!row.findings.empty()) return "see below";
    return row.after.threads == 0 ? "-" : "nothing";
}

double Seconds(steady_clock::duration time) {
    return std::chrono::duration<double>(time).count();
}

}  // namespace

void Row::Find(const std::string& finding) {
    if (findings.size() < kMostFindings && !Interrupted()) findings.push_back(finding);
}

bool HasFindings(std::span<const Row> rows) {
    return std::any_of(rows.begin(), rows.end(),
                       [](const Row& row) { return !row.findings.empty(); });
}

Progress::Progress(std::string title, uint64_t goal)
    : mTitle(std::move(title)),
      mGoal(goal),
      mTerminal(isatty(STDOUT_FILENO) == 1),
      mNext(steady_clock::now() + (mTerminal ? kRefresh : steady_clock::duration(kNewLine))) {
    if (mTerminal) Print(0);
}

Progress::~Progress() {
    if (mTerminal) std::printf("\r\x1b[K");
    std::fflush(stdout);
}

void Progress::Show(uint64_t done) {
    const auto now = steady_clock::now();
    if (now < mNext) return;
    mNext = now + (mTerminal ? kRefresh : steady_clock::duration(kNewLine));
    Print(done);
}

void Progress::Print(uint64_t done) {
    std::printf("%s%-26s %9s of %s%s", mTerminal ? "\r" : "", mTitle.c_str(), Grouped(done).c_str(),
                Grouped(mGoal).c_str(), mTerminal ? "\x1b[K" : "\n");
    std::fflush(stdout);
}

void PrintTable(const std::vector<Row>& rows) {
    std::printf("\n%-26s %9s %9s  %-12s %-12s %-17s %s\n", "section", "done", "seconds",
                "descriptors", "threads", "memory, KiB", "found");
    for (const Row& row : rows) {
        std::printf("%-26s %9s %9.1f  %-12s %-12s %-17s %s\n", row.title.c_str(),
                    Grouped(row.done).c_str(), Seconds(row.time),
                    Change(row.before.descriptors, row.after.descriptors).c_str(),
                    Change(row.before.threads, row.after.threads).c_str(),
                    Change(row.before.memory, row.after.memory).c_str(), Verdict(row));
    }
    for (const Row& row : rows)
        for (const std::string& finding : row.findings)
            std::printf("\n%s: %s\n", row.title.c_str(), finding.c_str());
}

}  // namespace zarvo::host::soak
