#pragma once

namespace zarvo::host::soak {

/** Lets SIGINT, SIGTERM and SIGHUP ask for the end of this program, and nothing more. */
void TakeInterrupts();

/** Whether the program is to end. Any thread. */
bool Interrupted();

}  // namespace zarvo::host::soak
