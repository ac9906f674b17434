#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/log/LogTap.h"

namespace zarvo::test {

/** How long a wait of a test may last before the test counts as failed. */
inline constexpr std::chrono::seconds kPatience{60};

/**
 * Keeps the log lines that the process writes during its life, one tag's. Any thread may log,
 * wait and take.
 */
class LogRecorder {
  public:
    /** Records the lines of `tag`. */
    explicit LogRecorder(std::string tag = "AONLog_HAL");

    /** Blocks until the messages of `count` lines contain `part`; false when patience ends. */
    bool WaitFor(std::string_view part, size_t count = 1) const;

    /** The lines so far, which are then forgotten. */
    std::vector<host::LogLine> Take();
    /** The same in the form "E: message", for comparing whole lists. */
    std::vector<std::string> TakeTexts();

  private:
    struct Lines;

    const std::shared_ptr<Lines> mLines;
    const host::LogTap mTap;
};

}  // namespace zarvo::test
