#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace zarvo::host {

/**
 * Whether, and on how many threads, this process may be called by others. The threads themselves
 * belong to the sessions. One per process, never destroyed; thread-safe.
 */
class [[gnu::visibility("default")]] ThreadPool {
  public:
    static ThreadPool& Instance();

    bool SetMaxThreads(uint32_t threads);
    /** Lets what is published and found be called. */
    void Start();
    bool IsStarted() const;
    /** Whether this process may be called: the pool is started or joined. */
    bool IsServing() const;
    /** Lets this process be called, by one call at a time unless the pool is started, and waits for
     * Stop. */
    void Join();
    /** Lets Join return: the program is about to end. */
    void Stop();
    /** Threads for the calls of one other process. */
    uint32_t Threads() const;

  private:
    ThreadPool() = default;

    static void LetCall();

    static constexpr uint32_t kDefaultMaxThreads = 15;

    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    // All of the following: mMutex.
    uint32_t mMaxThreads = kDefaultMaxThreads;
    bool mStarted = false;
    bool mJoined = false;
    bool mStopped = false;
};

}  // namespace zarvo::host
