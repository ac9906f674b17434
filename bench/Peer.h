#pragma once

#include <sys/types.h>
#include <sys/uio.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "host/binder/services/FileDescriptor.h"

namespace zarvo::bench {

/** Sends all of it, changing `parts`; false if the other end is gone. */
bool SendAll(int socket, std::span<iovec> parts);
/** Receives exactly that many bytes; false if the other end is gone. */
bool ReceiveAll(int socket, void* to, size_t length);

/** Sends a value as it lies in memory: both ends are this program. */
template <typename T>
bool SendValue(int socket, const T& value) {
    iovec part{const_cast<T*>(&value), sizeof(value)};
    return SendAll(socket, {&part, 1});
}
template <typename T>
bool ReceiveValue(int socket, T* value) {
    return ReceiveAll(socket, value, sizeof(*value));
}

/** The folder of this program. */
std::string ProgramFolder();

/**
 * A child process with a stream socket to it, which is its standard input. It is killed and reaped
 * at the end of this object, and dies with this process, of whose main thread it is made. Runs on
 * the processors of its parent.
 */
class Peer {
  public:
    /** This program in one of its roles. */
    explicit Peer(const std::string& role);
    /** Another program, with its standard error where it belongs. Ends the benchmark with a message
     * if the system refuses. */
    Peer(const std::vector<std::string>& command, int errors);
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer();

    int Socket() const { return mSocket.Get(); }
    pid_t Pid() const { return mPid; }

  private:
    host::FileDescriptor mSocket;
    pid_t mPid = -1;
};

}  // namespace zarvo::bench
