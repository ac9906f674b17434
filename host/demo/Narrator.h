#pragma once

#include <map>
#include <string_view>

namespace zarvo::host::demo {

/**
 * Tells the story on the standard output: numbered steps, what clients see, and the service's log
 * lines in logcat's form beside it. Used by one thread.
 */
class Narrator {
  public:
    Narrator();

    /** A new step of the story. */
    void Step(std::string_view title);
    /** What a person should know about what follows. */
    void Remark(std::string_view text);
    /** What one of the actors does or sees. */
    void Tell(std::string_view who, std::string_view what);
    /** A line of the service's log. */
    void Log(std::string_view line);
    /** A line that must hold for the story to be true; a false one makes the demo fail. */
    void Check(bool holds, std::string_view what);

    /** How many checks were made and how many of them did not hold. */
    int Checks() const { return mChecks; }
    int Failures() const { return mFailures; }
    /** How many log lines came, by the letter of their priority. */
    const std::map<char, int>& LogLines() const { return mLogLines; }
    /** Whether the standard output takes nothing any more. */
    bool IsMute() const { return mIsMute; }

  private:
    void Print(std::string_view colour, std::string_view text);

    const bool mColours;
    int mSteps = 0;
    int mChecks = 0;
    int mFailures = 0;
    std::map<char, int> mLogLines;
    bool mIsMute = false;
};

}  // namespace zarvo::host::demo
