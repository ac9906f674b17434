#pragma once

#include <algorithm>
#include <chrono>

namespace zarvo::host {

/** When the frames of one run are due. Used by the run's thread. */
class Pace {
  public:
    using Clock = std::chrono::steady_clock;
    using Period = std::chrono::nanoseconds;

    explicit Pace(Clock::time_point start) : mEarliest(start + kFirstFrame), mDue(start) {}

    /** The next beat of a clock, and so much later. A reader that takes long misses the frames that
     * are due meanwhile; the pace stays. */
    Clock::time_point NextBeat(Period period, Period late) {
        mDue += period;
        const auto behind = Clock::now() - (mDue + late);
        if (behind > Period::zero()) mDue += (behind / period + 1) * period;
        return mDue + late;
    }
    /** So long after the one before, or after the start. A reader that takes long misses nothing:
     * what is late comes at once, and what follows comes later by as much. */
    Clock::time_point After(Period delay) {
        mDue = std::max({mDue + delay, mEarliest, Clock::now()});
        return mDue;
    }

  private:
    /** No sensor is faster. Who starts a stream does not take frames before it is told of the
     * start, and would miss one that comes at once. */
    static constexpr Period kFirstFrame = std::chrono::milliseconds(33);

    const Clock::time_point mEarliest;
    /** When the latest frame was due, had it not been late. */
    Clock::time_point mDue;
};

}  // namespace zarvo::host
