#pragma once

#include <optional>
#include <string>

#include "host/binder/services/FileDescriptor.h"

namespace zarvo::host {

/**
 * The directory whose socket files are this user's services. Exists, and belongs to the user, from
 * Open on. Thread-safe.
 */
class RuntimeDirectory {
  public:
    enum class Fault { kNone, kForeign, kSystem };

    /** Finds it, making it if need be; logs what stands in the way. */
    static std::optional<RuntimeDirectory> Open(Fault* fault);

    const std::string& Path() const { return mPath; }
    /** Where a service of that name has its socket. */
    std::string SocketPath(const std::string& instance) const;
    /** A path beside it that nobody else uses. */
    std::string TemporaryPath(const std::string& instance) const;
    /** Keeps everybody else who publishes out until the result ends; not open if it cannot. */
    FileDescriptor Lock() const;

  private:
    explicit RuntimeDirectory(std::string path) : mPath(std::move(path)) {}

    std::string mPath;
};

}  // namespace zarvo::host
