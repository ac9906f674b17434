#pragma once

#include <chrono>
#include <string>

#include "host/binder/services/FileDescriptor.h"

namespace zarvo::host {

/** Tells when files appear in a directory. Used by one thread at a time. */
class DirectoryWatch {
  public:
    /** Watches from here on; if the system refuses, every wait takes its full time. */
    explicit DirectoryWatch(const std::string& path);

    /** Waits until a file appears or has appeared since the last time, or until `deadline`. */
    void Wait(std::chrono::steady_clock::time_point deadline);

  private:
    FileDescriptor mEvents;
};

}  // namespace zarvo::host
