#pragma once

#include <atomic>
#include <cstdint>

namespace zarvo::host {

/**
 * One place of a stand-in where a failure can be ordered by call number: the stand-in asks
 * ShouldFail() at each call, a test or program says which calls fail. Any thread may do either.
 */
class FaultPoint {
  public:
    /** Lets `count` calls fail, beginning with the `first` one from now on (1 is the next). */
    void FailCalls(uint64_t first, uint64_t count = 1) {
        const uint64_t begin = mCalls.load() + first;
        mFailEnd.store(begin + count < begin ? UINT64_MAX : begin + count);
        mFailBegin.store(begin);
    }
    /** Lets every call fail from now on. */
    void FailAlways() { FailCalls(1, UINT64_MAX); }
    /** Takes back what was ordered. */
    void Clear() {
        mFailBegin.store(UINT64_MAX);
        mFailEnd.store(0);
    }
    /** How often the place was reached. */
    uint64_t Calls() const { return mCalls.load(); }

    /** Counts one call and tells whether it is to fail. */
    bool ShouldFail() {
        const uint64_t call = mCalls.fetch_add(1) + 1;
        return call >= mFailBegin.load() && call < mFailEnd.load();
    }

  private:
    std::atomic<uint64_t> mCalls{0};
    std::atomic<uint64_t> mFailBegin{UINT64_MAX};
    std::atomic<uint64_t> mFailEnd{0};
};

}  // namespace zarvo::host
