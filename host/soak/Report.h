#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/soak/ServiceProcess.h"

namespace zarvo::host::soak {

/** What one section did, and what it found. */
struct Row {
    std::string title;
    uint64_t done = 0;
    std::chrono::steady_clock::duration time{0};
    /** What the service's process held when the section was warm, and when it ended; of the last
     * time that it ran. */
    Holdings before, after;
    /** The first ones. */
    std::vector<std::string> findings;

    /** Notes it; but not when the program is to end, which cuts things short. */
    void Find(const std::string& finding);
};

bool HasFindings(std::span<const Row> rows);

/** Tells how far a section is: in one line on a terminal, else now and then in a line more. */
class Progress {
  public:
    Progress(std::string title, uint64_t goal);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(uint64_t done);

  private:
    void Print(uint64_t done);

    const std::string mTitle;
    const uint64_t mGoal;
    const bool mTerminal;
    std::chrono::steady_clock::time_point mNext;
};

/** Prints all rows as a table, and below it what was found. */
void PrintTable(const std::vector<Row>& rows);

}  // namespace zarvo::host::soak
