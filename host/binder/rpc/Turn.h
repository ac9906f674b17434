#pragma once

#include <mutex>

namespace zarvo::host {

/**
 * A thread's turn to run a call of another process. A process that gave one thread to such calls,
 * and started no pool, runs one call at a time, whoever calls; any other runs them as they come. A
 * call that arrives inside another one, on the same thread, needs no turn of its own. Lives on the
 * stack. Thread-safe.
 */
class Turn {
  public:
    /** Waits for it. */
    Turn();

    /** Whether all calls that begin from now on share one turn. */
    static void SetOneAtATime(bool oneAtATime);

  private:
    std::unique_lock<std::mutex> mLock;
};

}  // namespace zarvo::host
