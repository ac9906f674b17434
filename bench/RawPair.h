#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "bench/Peer.h"

namespace zarvo::bench {

/**
 * The floor of an event between two processes: nothing but the system calls that it takes. A ping
 * of 32 bytes is answered with 32; then the event goes out scatter-gather in one message, from
 * where its bytes lie, and is answered with 32. The sockets have room for the largest event, as far
 * as the system allows, so that each of the two is sent at once. Used by one thread.
 */
class RawPair {
  public:
    /** Where the other end leaves the bytes: in one buffer for all, or in a new vector each. */
    enum class Landing { kBuffer, kVector };

    explicit RawPair(Landing landing);

    void Ping();
    /** Ping, then `otherBytes` bytes of any kind and the image. */
    void Deliver(size_t otherBytes, std::span<const uint8_t> image);

  private:
    void Ask(std::span<const uint8_t> other, std::span<const uint8_t> image);

    Peer mPeer;
    std::vector<uint8_t> mOther;
};

/** The other end, on standard input until that ends. */
int ServeRaw(RawPair::Landing landing);

}  // namespace zarvo::bench
