#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

#include "host/binder/rpc/Socket.h"
#include "host/binder/rpc/Wire.h"

namespace zarvo::host {

/**
 * One socket of a session. Small messages are taken off the socket at once, large ones go straight
 * to where they belong. Used by one thread at a time, but for Shutdown.
 */
class Connection {
  public:
    explicit Connection(Socket socket);

    const PeerProcess& Peer() const { return mPeer; }

    using Acknowledgements = std::vector<wire::DecStrongBody>;

    /** See Socket::Send. */
    bool Send(std::span<iovec> parts) { return mSocket.Send(parts); }
    /** The same. While the other end takes nothing because it wants to be rid of acknowledgements
     * itself, these are received. */
    bool Send(std::span<iovec> parts, Acknowledgements* received);
    /** Exactly that many bytes; false if the connection is gone. */
    bool Receive(uint8_t* to, size_t length);
    template <typename T>
    bool Receive(T* value) {
        static_assert(std::is_trivially_copyable_v<T>);
        return Receive(reinterpret_cast<uint8_t*>(value), sizeof(T));
    }
    /** The next command, which stays to be received; false if the connection is gone. */
    bool Peek(wire::CommandHeader* command);
    /** Receives that many bytes for nobody. */
    bool Skip(size_t length);
    /** See Socket::LimitReceiveTime. */
    void LimitReceiveTime(Deadline deadline) const { mSocket.LimitReceiveTime(deadline); }
    void Shutdown() { mSocket.Shutdown(); }

  private:
    /** False if the next command is no acknowledgement. */
    bool ReceiveAcknowledgement(Acknowledgements* received);
    /** Hands out what was received ahead. */
    size_t TakeAhead(uint8_t* to, size_t length);

    const Socket mSocket;
    const PeerProcess mPeer;
    /** As much as an event without its picture takes, so that one comes at once. */
    std::array<uint8_t, 4096> mAhead;
    size_t mBegin = 0;
    size_t mEnd = 0;
};

}  // namespace zarvo::host
