#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "host/log/LogTap.h"

namespace zarvo::host::demo {

/**
 * Tells the story on the standard output: numbered steps, what clients see, and the service's log
 * lines in logcat's form beside it. Any thread may tell.
 */
class Narrator {
  public:
    /** @param pause how long to wait before each step, so that a person can follow. */
    explicit Narrator(std::chrono::milliseconds pause);

    /** A new step of the story. */
    void Step(std::string_view title);
    /** What a person should know about what follows. */
    void Remark(std::string_view text);
    /** What one of the actors does or sees. */
    void Tell(std::string_view who, std::string_view what);
    /** A line that must hold for the story to be true; a false one makes the demo fail. */
    void Check(bool holds, std::string_view what);

    /** How many checks were made and how many of them did not hold. */
    int Checks();
    int Failures();
    /** How many log lines came, by the letter of their priority. */
    std::map<char, int> LogLines();

  private:
    void Print(std::string_view colour, std::string_view text) const;
    void PrintLog(const LogLine& line);

    const std::chrono::milliseconds mPause;
    const bool mColours;
    std::mutex mMutex;
    int mSteps = 0;
    int mChecks = 0;
    int mFailures = 0;
    std::map<char, int> mLogLines;
    const LogTap mTap;
};

}  // namespace zarvo::host::demo
