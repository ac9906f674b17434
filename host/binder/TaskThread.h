#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace zarvo::host {

/**
 * A thread that runs tasks one after the other, in order, with no lock held. Thread-safe, except
 * that Join and the end are for one thread. The thread needs this object only when it is posted to,
 * so it may outlive it.
 */
class TaskThread {
  public:
    TaskThread() = default;
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;
    /** Finishes, discards, and lets the thread go if it was not joined. */
    ~TaskThread();

    /** Starts the thread, if it does not run yet; false after Finish, or if the system has none to
     * give. */
    bool Start();
    /** Starts the thread and gives it a task; false after Finish or without a thread. */
    bool Post(std::function<void()> task);
    /** Takes no more tasks: the thread ends when it has none left. */
    void Finish();
    /** Drops the tasks not begun yet. */
    void Discard();

    bool IsThisThread() const;
    /** After Finish: waits for the thread's end. Not on the thread itself. */
    void Join();
    /** After Finish: lets the thread end by itself. */
    void LetGo();

  private:
    struct Queue {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::function<void()>> tasks;  // mutex
        bool finished = false;                    // mutex
        std::thread::id thread;                   // mutex
    };

    bool StartLocked();
    static void Run(const std::shared_ptr<Queue>& queue);

    const std::shared_ptr<Queue> mQueue = std::make_shared<Queue>();
    std::thread mThread;  // mQueue->mutex, until finished
};

}  // namespace zarvo::host
