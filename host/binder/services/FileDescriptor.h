#pragma once

#include <unistd.h>

#include <utility>

namespace zarvo::host {

/** Owns a file descriptor, or none. As thread-safe as a number. */
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : mFd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : mFd(std::exchange(other.mFd, -1)) {}
    FileDescriptor& operator=(FileDescriptor other) noexcept {
        std::swap(mFd, other.mFd);
        return *this;
    }
    ~FileDescriptor() {
        if (mFd >= 0) close(mFd);
    }

    bool IsOpen() const { return mFd >= 0; }
    int Get() const { return mFd; }

  private:
    int mFd = -1;
};

}  // namespace zarvo::host
