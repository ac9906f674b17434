#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "host/binder/Binder.h"
#include "host/binder/LocalBinder.h"
#include "host/binder/ProxyBinder.h"
#include "host/binder/Session.h"

namespace zarvo::host {

/**
 * What one end of a connection calls the objects that pass it: local ones by addresses it gives,
 * remote ones by those the other end gave. Holds a local object for as long as it is lent, so its
 * address stays; names a proxy weakly, so there is one for an address while anyone holds it.
 *
 * Owned by its end. Thread-safe; ends no object while its own lock is held.
 */
class AddressTable {
  public:
    /** Which end it is: addresses tell who gave them. */
    enum class Side : uint64_t { kClient = 1, kServer = 3 };

    /** Everything a table held when it closed. */
    struct Remains {
        std::vector<Ref<LocalBinder>> locals;
        std::vector<Ref<AIBinder>> proxies;
    };

    explicit AddressTable(Side side) : mSide(side) {}

    /** Holds `object` once more. STATUS_DEAD_OBJECT when closed, STATUS_NO_MEMORY when full. */
    binder_status_t Lend(LocalBinder* object, uint64_t* address);
    /** Holds the local object of `address` that many times less; the last one lets it go. */
    void TakeBack(uint64_t address, uint64_t times);
    /** The local object of that address, null if there is none. */
    Ref<LocalBinder> Local(uint64_t address) const;

    /** The proxy for what arrived as `address`; a new one belongs to `session`. */
    Ref<AIBinder> Receive(uint64_t address, int32_t stability, std::shared_ptr<Session> session);
    /** How often what this proxy stood for has arrived; 0 if another one has taken its place. */
    uint64_t Forget(const ProxyBinder* proxy);

    /** Empties the table and lends nothing any more. */
    Remains Close();

  private:
    struct Lent {
        Ref<LocalBinder> object;
        uint64_t times;
    };
    struct Received {
        WeakRef proxy;
        uint64_t times;
    };

    uint64_t NewAddress();

    const Side mSide;
    mutable std::mutex mMutex;
    // All of the following: mMutex.
    bool mClosed = false;
    uint32_t mNextNumber = 0;
    std::unordered_map<uint64_t, Lent> mLent;
    std::unordered_map<const LocalBinder*, uint64_t> mAddresses;
    std::unordered_map<uint64_t, Received> mReceived;
};

}  // namespace zarvo::host
