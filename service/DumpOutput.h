#pragma once

#include <android/binder_status.h>

#include <chrono>
#include <string_view>

namespace zarvo::aon {

/**
 * Writes a text to somebody else's file descriptor: a file, a pipe or a socket, closed or with
 * nobody who reads. Waits for the reader no longer than `limit`, and no signal comes of it.
 *
 * @return STATUS_TIMED_OUT when time ran out, STATUS_UNKNOWN_ERROR when it cannot be written to.
 */
binder_status_t WriteDump(int fd, std::string_view text, std::chrono::milliseconds limit);

}  // namespace zarvo::aon
