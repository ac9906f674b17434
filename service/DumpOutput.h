#pragma once

#include <android/binder_status.h>

#include <chrono>
#include <string_view>

namespace zarvo::aon {

/**
 * Writes a text to somebody else's file descriptor: a file, a pipe, a terminal or a socket, perhaps
 * closed or with nobody who reads. Waits for the reader no longer than `limit`, and no signal comes
 * of it; only a file is as slow as its file system. Any thread, also several at once on one pipe.
 *
 * A pipe and a terminal are O_NONBLOCK for the length of each write, for all who share them.
 *
 * @return STATUS_TIMED_OUT when time ran out, STATUS_UNKNOWN_ERROR when it cannot be written to or
 *         is something else.
 */
binder_status_t WriteDump(int fd, std::string_view text, std::chrono::milliseconds limit);

}  // namespace zarvo::aon
