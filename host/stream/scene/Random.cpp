#include "host/stream/scene/Random.h"

namespace zarvo::host {
namespace {

uint64_t Mix(uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

}  // namespace

float RandomUnit(uint64_t seed, uint64_t channel) {
    constexpr uint64_t kUpperBits = 40;
    constexpr float kStep = 1.0F / (1U << (64 - kUpperBits));
    return static_cast<float>(SeedOf(seed, channel) >> kUpperBits) * kStep;
}

double RandomBetween(uint64_t seed, uint64_t channel, double low, double high) {
    return low + (high - low) * static_cast<double>(RandomUnit(seed, channel));
}

uint64_t RandomBelow(uint64_t seed, uint64_t channel, uint64_t count) {
    return SeedOf(seed, channel) % count;
}

uint64_t SeedOf(uint64_t seed, uint64_t part) {
    return Mix(Mix(seed) ^ part);
}

}  // namespace zarvo::host
