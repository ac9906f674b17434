#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace zarvo::host {

/**
 * Threads that end by themselves at some time. Each waits for the one that ended before it, so that
 * of all that have ended one at most keeps its stack. Thread-safe. The threads do not need this
 * object: what ends while they run lets them go.
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
    struct State {
        /** Called by a thread that is about to end, if it still belongs here. */
        void End();

        std::mutex mutex;
        std::map<std::thread::id, std::thread> running;  // mutex
        std::thread ended;                               // mutex
    };

    const std::shared_ptr<State> mState = std::make_shared<State>();
};

}  // namespace zarvo::host
