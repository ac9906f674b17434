#include "host/stream/Lateness.h"

#include <algorithm>

#include "host/stream/scene/Random.h"

namespace zarvo::host {

std::chrono::nanoseconds LatenessOf(const Jitter& jitter, uint32_t frame,
                                    std::chrono::nanoseconds period) {
    constexpr double kNearest = 0.25;
    constexpr uint64_t kLateness = 0x6C617465;
    const uint64_t seed = SeedOf(jitter.seed, kLateness);
    const auto chance = [&](uint32_t number) {
        return RandomBetween(seed, number, 0, static_cast<double>(jitter.fraction));
    };
    // A frame that is pushed back by the one before is early enough not to push the next.
    const double pushed = chance(frame - 1) - (1 - kNearest);
    const double share = std::max(chance(frame), pushed);
    return std::chrono::nanoseconds(
            static_cast<int64_t>(share * static_cast<double>(period.count())));
}

}  // namespace zarvo::host
