#pragma once

#include <string_view>

namespace zarvo::host::demo {

/**
 * What this program is when the demo starts it as another process of its own: speaks as
 * ServeCommands says, and finds what it uses by its published name, waiting for it. Each gives the
 * program's exit status.
 */

/** A client of the service. It has a thread pool, so that it can be called. */
int RunClient();
/** The hand that turns the simulator's knobs. */
int RunControls();

}  // namespace zarvo::host::demo
