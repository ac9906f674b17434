#pragma once

#include <android/binder_ibinder.h>

#include <optional>

namespace zarvo::host {

/**
 * What the service's process has on a Linux machine beyond what it is on a phone, where these do
 * nothing: it has a command line and may play a recording, its log goes to stderr in logcat's form,
 * it ends in good order on SIGTERM and SIGINT, and others may turn the simulator's knobs. Called by
 * main alone: before it makes any thread, once the service is published, and after the pool let it
 * go.
 *
 * The first gives the exit status if there is nothing to serve, and has told why.
 */
std::optional<int> BeginHostControls(int argc, char** argv);
/** False, and logged, if the controls cannot be published. */
bool PublishHostControls(AIBinder* service);
void EndHostControls();

}  // namespace zarvo::host
