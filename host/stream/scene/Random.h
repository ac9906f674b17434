#pragma once

#include <cstdint>

namespace zarvo::host {

/** A number in [0, 1) that looks random and depends on the two arguments alone. */
float RandomUnit(uint64_t seed, uint64_t channel);

/** The same within bounds: at least `low`, less than `high`. */
double RandomBetween(uint64_t seed, uint64_t channel, double low, double high);

/** One of `count` numbers from 0 on; `count` is at least 1. */
uint64_t RandomBelow(uint64_t seed, uint64_t channel, uint64_t count);

/** A seed of its own for one part of what a seed decides. */
uint64_t SeedOf(uint64_t seed, uint64_t part);

}  // namespace zarvo::host
