#include "host/binder/services/ThreadPool.h"

#include <android/binder_process.h>

#include <algorithm>

#include "host/binder/services/FoundServices.h"
#include "host/binder/services/PublishedServices.h"

namespace zarvo::host {

ThreadPool& ThreadPool::Instance() {
    static auto* const pool = new ThreadPool();
    return *pool;
}

bool ThreadPool::SetMaxThreads(uint32_t threads) {
    const std::lock_guard lock(mMutex);
    if (mStarted) return false;
    mMaxThreads = threads;
    return true;
}

void ThreadPool::Start() {
    {
        const std::lock_guard lock(mMutex);
        if (mStarted) return;
        mStarted = true;
    }
    PublishedServices::Instance().Start();
    FoundServices::Instance().Start();
}

bool ThreadPool::IsStarted() const {
    const std::lock_guard lock(mMutex);
    return mStarted;
}

void ThreadPool::Join() {
    Start();
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mStopped; });
}

void ThreadPool::Stop() {
    const std::lock_guard lock(mMutex);
    mStopped = true;
    mChanged.notify_all();
}

uint32_t ThreadPool::Threads() const {
    constexpr uint32_t kMost = 64;
    const std::lock_guard lock(mMutex);
    return std::min(mMaxThreads, kMost - 1) + 1;
}

}  // namespace zarvo::host

using zarvo::host::ThreadPool;

bool ABinderProcess_setThreadPoolMaxThreadCount(uint32_t numThreads) {
    return ThreadPool::Instance().SetMaxThreads(numThreads);
}

void ABinderProcess_startThreadPool() {
    ThreadPool::Instance().Start();
}

bool ABinderProcess_isThreadPoolStarted() {
    return ThreadPool::Instance().IsStarted();
}

void ABinderProcess_joinThreadPool() {
    ThreadPool::Instance().Join();
}
