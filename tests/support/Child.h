#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zarvo::test {

/** How long a wait of a test may last before the test counts as failed. */
inline constexpr int kPatienceMs = 60'000;

/** A program in a process of its own, killed when this goes at the latest. Used by one thread. */
class Child {
  public:
    /** Starts it; its standard output can be read here, its standard error is dropped. */
    explicit Child(std::vector<std::string> command);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t Pid() const { return mPid; }
    void Signal(int number) const;
    /** Stops it; none of its threads runs when this returns. */
    void Stop() const;
    /** The next line it prints; empty if it ends, or prints none in time. */
    std::string Line() const;
    /** Waits for its end, unless that does not come in time. */
    void Wait();

  private:
    pid_t mPid = 0;
    int mOutput = -1;
};

}  // namespace zarvo::test
