#pragma once

#include <chrono>
#include <cstdint>

namespace zarvo::host {

/** How late the frames of a stream are, against a clock that never drifts. */
struct Jitter {
    uint64_t seed = 0;
    /** Most of a period that a frame may be late, 0 to 1. */
    float fraction = 0;
};

/**
 * How late frame number `frame` is: from zero to less than `fraction` of the period, and never
 * so little that it comes less than a quarter of a period after the frame before. A pure function.
 */
[[gnu::visibility("default")]] std::chrono::nanoseconds LatenessOf(const Jitter& jitter,
                                                                   uint32_t frame,
                                                                   std::chrono::nanoseconds period);

}  // namespace zarvo::host
