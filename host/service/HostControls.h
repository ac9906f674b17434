#pragma once

namespace zarvo::host {

/**
 * What the service's process has on a Linux machine beyond what it is on a phone, where both of
 * these do nothing. Called by main alone, before it makes any thread, and after the pool let it go.
 */
void BeginHostControls();
void EndHostControls();

}  // namespace zarvo::host
