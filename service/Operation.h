#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/Trace.h"
#include "service/AONService.h"

namespace zarvo::aon {

/**
 * One operation of the service, from its begin to its end: holds mLock and notes the thread. On a
 * thread that is inside an operation already it is nested: mLock is held, but by that one.
 *
 * At its end it is remembered with what refused it, if anything did.
 */
class SCOPED_CAPABILITY AONService::Operation {
  public:
    /** What it may change; `what` is its name. Without a pid: the caller's. */
    Operation(AONService& service, const Change& change)
            ACQUIRE(service.mLock) NO_THREAD_SAFETY_ANALYSIS
        : mTrace(change.what),
          mService(service),
          mNested(service.mLockOwner.load() == std::this_thread::get_id()) {
        if (mNested) return;
        mService.mLock.lock();
        mService.mLockOwner.store(std::this_thread::get_id());
        Begin(change);
    }

    ~Operation() RELEASE() NO_THREAD_SAFETY_ANALYSIS {
        if (mNested) return;
        if (!mIsQuery) mService.mHistory.Note(mService.mOperation);
        HandlePendingDeaths();
        // Let go of after the lock: a client's own code may run when its callback goes.
        const auto released = std::exchange(mService.mReleased, {});
        mService.mRunning.Set({});
        mService.mLockOwner.store(std::thread::id());
        mService.mLock.unlock();
    }

    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    bool IsNested() const { return mNested; }
    /** It changes nothing, and is not remembered. */
    void SetQuery() { mIsQuery = true; }

  private:
    void Begin(const Change& change) NO_THREAD_SAFETY_ANALYSIS {
        mService.mOperation = change;
        mService.mOperation.when = Moment::Now();
        mService.mOperation.pid =
                change.pid == Change::kNone ? AIBinder_getCallingPid() : change.pid;
        mService.mRunning.Set(
                {change.what, mService.mOperation.pid, mService.mOperation.when.steady});
    }

    void HandlePendingDeaths() NO_THREAD_SAFETY_ANALYSIS {
        // Handling one may bring the next.
        while (!mService.mPendingDeaths.empty()) {
            for (auto& notice : std::exchange(mService.mPendingDeaths, {})) {
                mService.mHistory.Note(
                        {.what = "client died", .clientHandle = notice.clientHandle});
                mService.HandleDeathLocked(notice);
                mService.mReleased.push_back(std::move(notice.callback));
            }
        }
    }

    const TraceSection mTrace;
    AONService& mService;
    const bool mNested;
    bool mIsQuery = false;
};

}  // namespace zarvo::aon
