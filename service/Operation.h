#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "service/AONService.h"

namespace zarvo::aon {

/**
 * One operation of the service, from its begin to its end: holds mLock and notes the thread. On a
 * thread that is inside an operation already it is nested: mLock is held, but by that one.
 */
class SCOPED_CAPABILITY AONService::Operation {
  public:
    explicit Operation(AONService& service) ACQUIRE(service.mLock) NO_THREAD_SAFETY_ANALYSIS
        : mService(service),
          mNested(service.mLockOwner.load() == std::this_thread::get_id()) {
        if (mNested) return;
        mService.mLock.lock();
        mService.mLockOwner.store(std::this_thread::get_id());
    }

    ~Operation() RELEASE() NO_THREAD_SAFETY_ANALYSIS {
        if (mNested) return;
        HandlePendingDeaths();
        // Let go of after the lock: a client's own code may run when its callback goes.
        const auto released = std::exchange(mService.mReleased, {});
        mService.mLockOwner.store(std::thread::id());
        mService.mLock.unlock();
    }

    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    bool IsNested() const { return mNested; }

  private:
    void HandlePendingDeaths() NO_THREAD_SAFETY_ANALYSIS {
        // Handling one may bring the next.
        while (!mService.mPendingDeaths.empty()) {
            for (auto& notice : std::exchange(mService.mPendingDeaths, {})) {
                mService.HandleDeathLocked(notice);
                mService.mReleased.push_back(std::move(notice.callback));
            }
        }
    }

    AONService& mService;
    const bool mNested;
};

}  // namespace zarvo::aon
