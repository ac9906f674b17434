#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Published.h"

namespace zarvo::aon {

/** The present, for a log and for measuring. */
struct Moment {
    using Wall = std::chrono::system_clock::time_point;
    using Steady = std::chrono::steady_clock::time_point;

    Wall wall{};
    Steady steady{};

    static Moment Now() {
        return {std::chrono::system_clock::now(), std::chrono::steady_clock::now()};
    }
};

/** A change that somebody may ask about later. */
struct Change {
    /** In place of a number that says nothing here. */
    static constexpr int32_t kNone = INT32_MIN;
    /** In place of a process. */
    static constexpr pid_t kNobody = 0;

    Moment when{};
    /** What happened, and why; texts that live for ever. */
    const char* what = "";
    const char* reason = "";
    int64_t clientHandle = 0;
    /** The process that asked for it, as binder told; kNobody where it told none. */
    pid_t pid = kNone;
    int32_t sensorId = kNone;
    /** Instance id of a camera device. */
    int32_t cameraDevice = kNone;
    int32_t serviceTypes = kNone;
};

/**
 * The last changes of one room. Noting one takes no lock and allocates nothing; it is never done
 * per event.
 */
class History {
  public:
    static constexpr std::size_t kMost = 32;

    /** One caller at a time: under the room's lock. A time that is missing is filled in. */
    void Note(Change change) {
        if (change.when.steady == Moment::Steady{}) change.when = Moment::Now();
        const std::size_t count = mCount.load(std::memory_order_relaxed);
        mChanges[count % kMost].Set(change);
        mCount.store(count + 1, std::memory_order_release);
    }

    /** The last ones, the oldest first. One that is being replaced meanwhile may be missing. */
    std::vector<Change> Latest() const {
        const std::size_t count = mCount.load(std::memory_order_acquire);
        std::vector<Change> latest;
        for (std::size_t i = count < kMost ? 0 : count - kMost; i < count; ++i) {
            const auto change = mChanges[i % kMost].Get();
            if (change.has_value()) latest.push_back(*change);
        }
        return latest;
    }

  private:
    std::atomic<std::size_t> mCount{0};
    std::array<Published<Change>, kMost> mChanges;
};

}  // namespace zarvo::aon
