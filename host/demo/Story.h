#pragma once

#include <cstdint>

namespace zarvo::host::demo {

/**
 * Plays a client's whole life against the service with the simulated sensor, and tells it on the
 * standard output. Takes about ten seconds.
 *
 * @param seed the simulated scene's random seed.
 * @param quick whether to leave out the pauses that let a person follow.
 * @return whether everything went as it should.
 */
bool PlayStory(uint64_t seed, bool quick);

}  // namespace zarvo::host::demo
