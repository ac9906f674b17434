#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace zarvo::aon {

/** Counts things; any thread, no order with anything else. */
class Counter {
  public:
    void Add() { mCount.fetch_add(1, std::memory_order_relaxed); }
    uint64_t Count() const { return mCount.load(std::memory_order_relaxed); }

  private:
    std::atomic<uint64_t> mCount{0};
};

/** When something happened last; any thread. */
class LastTime {
  public:
    using Time = std::chrono::steady_clock::time_point;

    void Set(Time time) {
        mTicks.store(time.time_since_epoch().count(), std::memory_order_relaxed);
    }
    /** The clock's epoch as long as it has not happened. */
    Time Get() const { return Time(Time::duration(mTicks.load(std::memory_order_relaxed))); }
    bool IsSet() const { return mTicks.load(std::memory_order_relaxed) != 0; }

  private:
    std::atomic<Time::rep> mTicks{0};
};

}  // namespace zarvo::aon
