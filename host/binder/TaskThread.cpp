#include "host/binder/TaskThread.h"

#include <system_error>

namespace zarvo::host {

TaskThread::~TaskThread() {
    Finish();
    Discard();
    LetGo();
}

bool TaskThread::Start() {
    const std::lock_guard lock(mQueue->mutex);
    return StartLocked();
}

bool TaskThread::Post(std::function<void()> task) {
    const std::lock_guard lock(mQueue->mutex);
    if (!StartLocked()) return false;
    mQueue->tasks.push_back(std::move(task));
    mQueue->changed.notify_one();
    return true;
}

void TaskThread::Finish() {
    const std::lock_guard lock(mQueue->mutex);
    mQueue->finished = true;
    mQueue->changed.notify_one();
}

void TaskThread::Discard() {
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(mQueue->mutex);
    dropped.swap(mQueue->tasks);
}

bool TaskThread::IsThisThread() const {
    const std::lock_guard lock(mQueue->mutex);
    return mQueue->thread == std::this_thread::get_id();
}

void TaskThread::Join() {
    if (mThread.joinable()) mThread.join();
}

void TaskThread::LetGo() {
    if (mThread.joinable()) mThread.detach();
}

bool TaskThread::StartLocked() {
    // After Finish the thread belongs to who joins it.
    if (mQueue->finished) return false;
    if (mThread.joinable()) return true;
    try {
        mThread = std::thread([queue = mQueue] { Run(queue); });
    } catch (const std::system_error&) {
        return false;
    }
    mQueue->thread = mThread.get_id();
    return true;
}

void TaskThread::Run(const std::shared_ptr<Queue>& queue) {
    std::unique_lock lock(queue->mutex);
    while (true) {
        queue->changed.wait(lock, [&] { return queue->finished || !queue->tasks.empty(); });
        if (queue->tasks.empty()) return;
        std::function<void()> task = std::move(queue->tasks.front());
        queue->tasks.pop_front();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
}

}  // namespace zarvo::host
