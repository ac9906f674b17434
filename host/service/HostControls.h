#pragma once

#include <android/binder_ibinder.h>

namespace zarvo::host {

/**
 * What the service's process has on a Linux machine beyond what it is on a phone, where these do
 * nothing: its log goes to stderr in logcat's form, it ends in good order on SIGTERM and SIGINT,
 * and others may turn the simulator's knobs. Called by main alone: before it makes any thread, once
 * the service is published, and after the pool let it go.
 */
void BeginHostControls();
/** False, and logged, if the controls cannot be published. */
bool PublishHostControls(AIBinder* service);
void EndHostControls();

}  // namespace zarvo::host
