#pragma once

#include <sys/types.h>

#include <string>

namespace conformance {

/** What the other process does until it is killed. */
inline constexpr char kRegistered[] = "registered";
inline constexpr char kReceiving[] = "receiving";
inline constexpr char kInsideACallback[] = "inside";

/**
 * This program as a client in a process of its own, which ends by SIGKILL; when this object or its
 * thread goes at the latest.
 */
class OtherProcess {
  public:
    explicit OtherProcess(const std::string& role);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    /** Waits until it has come to where its role ends: true if it did. */
    bool Arrives() const;
    void Kill();

  private:
    pid_t mPid = 0;
    int mOutput = -1;
};

/** What the other process does: main's exit status, if it is not killed before. */
int PlayRole(const std::string& role);

}  // namespace conformance
