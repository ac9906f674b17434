#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace zarvo::host {

/**
 * Threads that end by themselves at some time. Thread-safe. The threads do not need this object:
 * what ends while they run lets them go.
 */
class ThreadSet {
  public:
    ThreadSet() = default;
    ThreadSet(const ThreadSet&) = delete;
    ThreadSet& operator=(const ThreadSet&) = delete;
    /** Lets go of the threads that still run. */
    ~ThreadSet();

    /** Runs `work` on a new thread; false if the system has none to give. */
    bool Spawn(std::function<void()> work);
    /** Waits for the end of all threads but this one. */
    void JoinAll();

  private:
    struct Member {
        std::thread thread;
        bool ended = false;  // mutex
    };
    struct State {
        std::mutex mutex;
        std::list<std::shared_ptr<Member>> members;  // mutex
    };

    void ReapLocked();

    const std::shared_ptr<State> mState = std::make_shared<State>();
};

}  // namespace zarvo::host
