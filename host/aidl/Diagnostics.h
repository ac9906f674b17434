#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host::aidl {

/** A place in a source file; both numbers count from 1, the column in bytes. */
struct Position {
    uint32_t line = 1;
    uint32_t column = 1;
};

/**
 * The errors of one run, in the order in which they were found, each as
 * "path:line:column: error: text". Keeps the first 50; the rest are only counted.
 */
class Diagnostics {
  public:
    /** An error at a place of a file. */
    void Error(std::string_view path, Position position, std::string_view text);
    /** An error that has no place, such as a file that cannot be read. */
    void Error(std::string_view text);

    bool HasErrors() const { return mCount != 0; }
    /** How many errors there were, kept or not. */
    size_t Count() const { return mCount; }
    const std::vector<std::string>& Messages() const { return mMessages; }
    /** All messages, each ended by a line feed. */
    std::string Text() const;

  private:
    void Add(std::string message);

    std::vector<std::string> mMessages;
    size_t mCount = 0;
};

}  // namespace zarvo::host::aidl
