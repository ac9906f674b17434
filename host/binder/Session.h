#pragma once

#include <android/binder_ibinder.h>

#include <cstdint>

namespace zarvo::host {

class ProxyBinder;

/**
 * One end of a connection, as the proxies and parcels of that end see it: objects travel as
 * addresses, calls as parcels. Held by its proxies and parcels, which may outlive the connection
 * itself: it is then no longer alive, and stays so. Thread-safe.
 */
class Session {
  public:
    virtual ~Session() = default;

    virtual bool IsAlive() const = 0;

    /**
     * Calls the object at the far end that has `address`, and waits for the reply unless oneway.
     * STATUS_DEAD_OBJECT once the connection is gone, also during the call; STATUS_WOULD_BLOCK if
     * the far end takes no calls from this thread.
     */
    virtual binder_status_t Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                                     AParcel* reply, binder_flags_t flags) = 0;

    /**
     * An object goes into a parcel of this end: gives its address and keeps that valid until
     * TakeBack, or until the far end that got the parcel has acknowledged it.
     * STATUS_INVALID_OPERATION for a proxy of another connection.
     */
    virtual binder_status_t Lend(AIBinder* object, uint64_t* address) = 0;
    /** A parcel with a lent object has ended unsent. */
    virtual void TakeBack(uint64_t address) = 0;
    /** A parcel that arrived names an address: a reference to that object. */
    virtual binder_status_t Resolve(uint64_t address, int32_t stability, AIBinder** object) = 0;

    /** The last reference to a proxy of this end is gone. */
    virtual void ProxyEnded(ProxyBinder* proxy) = 0;

    /** Makes sure that the end of the connection will be noticed and told.
     * STATUS_INVALID_OPERATION if nobody would notice, STATUS_NO_MEMORY without a thread. */
    virtual binder_status_t WatchForDeath() = 0;
};

}  // namespace zarvo::host
