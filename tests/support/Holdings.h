#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace zarvo::test {

/** What a process has open and what runs in it. */
struct Holdings {
    static Holdings Of(pid_t process) {
        const std::string directory = "/proc/" + std::to_string(process);
        return {Count(directory + "/fd"), Count(directory + "/task")};
    }
    bool IsWithin(const Holdings& other) const {
        return descriptors <= other.descriptors && threads <= other.threads;
    }

    ptrdiff_t descriptors;
    ptrdiff_t threads;

  private:
    /** Threads come and go while they are counted. */
    static ptrdiff_t Count(const std::string& directory) {
        std::error_code error;
        ptrdiff_t count = 0;
        for (std::filesystem::directory_iterator entry(directory, error), end;
             !error && entry != end; entry.increment(error)) {
            ++count;
        }
        return count;
    }
};

}  // namespace zarvo::test
