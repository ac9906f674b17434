#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "host/binder/services/FileDescriptor.h"

namespace zarvo::host {

/** Tells when files appear in a directory. Used by one thread at a time. */
class DirectoryWatch {
  public:
    /** Watches from here on; not open, and errno says why, if the system refuses. */
    explicit DirectoryWatch(const std::string& path);

    bool IsOpen() const { return mEvents.IsOpen(); }
    /** Waits until a file appears or has appeared since the last time; false when none did until
     * `deadline`, if there is one. */
    bool Wait(std::optional<std::chrono::steady_clock::time_point> deadline);

  private:
    FileDescriptor mEvents;
};

}  // namespace zarvo::host
