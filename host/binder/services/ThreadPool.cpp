#include "host/binder/services/ThreadPool.h"

#include <android/binder_process.h>

#include <algorithm>

#include "host/binder/rpc/Turn.h"
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
        Turn::SetOneAtATime(false);
    }
    LetCall();
}

bool ThreadPool::IsStarted() const {
    const std::lock_guard lock(mMutex);
    return mStarted;
}

bool ThreadPool::IsServing() const {
    const std::lock_guard lock(mMutex);
    return mStarted || mJoined;
}

void ThreadPool::Join() {
    {
        const std::lock_guard lock(mMutex);
        mJoined = true;
        Turn::SetOneAtATime(!mStarted);
    }
    LetCall();
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

void ThreadPool::LetCall() {
    PublishedServices::Instance().Start();
    FoundServices::Instance().Start();
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
