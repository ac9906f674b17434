#pragma once

#include <string>

namespace zarvo::host::ctl {

/**
 * Prepares the program's standard streams, before anything else is opened: one that is closed stays
 * out of reach for sockets and files, and neither a reader that leaves nor a limit on the size of
 * files ends the program by a signal.
 */
void PrepareOutput();

/** Writes a line to standard output at once. False if that cannot be: FinishOutput() says why. */
bool WriteLine(const std::string& line);

/**
 * To be called once, at the end. Gives the status, or kFailed and a line on stderr if standard
 * output did not take all that was written to it. A reader that left had what it wanted: then
 * kDone, and no line.
 */
int FinishOutput(int status);

/** Calls this once nobody reads standard output any more, from a thread of its own; perhaps never.
 */
void WhenReaderLeaves(void (*then)());

}  // namespace zarvo::host::ctl
