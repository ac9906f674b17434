#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "bench/Peer.h"

struct sd_bus;

namespace zarvo::bench {

/**
 * The same job through sd-bus, peer to peer: a ping, then a call with the image and the other
 * bytes as arrays, which are vectors at both ends. Used by one thread.
 */
class BusPair {
  public:
    BusPair();

    /** Ping, then `otherBytes` bytes of any kind and the image, which becomes a vector first. */
    void Deliver(size_t otherBytes, std::span<const uint8_t> image);

  private:
    struct CloseBus {
        void operator()(sd_bus* bus) const;
    };

    void Ping();

    Peer mPeer;
    std::unique_ptr<sd_bus, CloseBus> mBus;
};

/** The other end, on standard input until that ends. */
int ServeBus();

}  // namespace zarvo::bench
