#pragma once

#include "host/demo/CommandLine.h"

namespace zarvo::host::demo {

/**
 * Plays a client's whole life against the service with the simulated sensor, each in a process of
 * its own, and tells it on the standard output. Takes about ten seconds. The program ends in it if
 * the story cannot go on, see Stage.
 *
 * @return whether everything went as it should.
 */
bool PlayStory(const Options& options);

}  // namespace zarvo::host::demo
