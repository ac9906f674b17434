#pragma once

#include <cstdint>

namespace zarvo::host::demo {

/**
 * Plays a client's whole life against the service with the simulated sensor, and tells it on the
 * standard output. Takes about ten seconds, or less when it is quick and does not wait for readers.
 *
 * @param seed the simulated scene's random seed.
 * @return whether everything went as it should.
 */
bool PlayStory(uint64_t seed, bool quick);

}  // namespace zarvo::host::demo
