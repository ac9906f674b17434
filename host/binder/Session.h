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
     * STATUS_DEAD_OBJECT once the connection is gone, also during the call.
     */
    virtual binder_status_t Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                                     AParcel* reply, binder_flags_t flags) = 0;

    /**
     * An object goes into a parcel of this end: gives its address and keeps that valid until
     * TakeBack. STATUS_INVALID_OPERATION for a proxy of another connection.
     */
    virtual binder_status_t Lend(AIBinder* object, uint64_t* address) = 0;
    /** A parcel with a lent object has ended. */
    virtual void TakeBack(AIBinder* object, uint64_t address) = 0;
    /** A parcel names an address the session did not put there: a reference to that object. */
    virtual binder_status_t Resolve(uint64_t address, int32_t stability, AIBinder** object) = 0;

    /** The last reference to a proxy of this end is gone. */
    virtual void ProxyEnded(ProxyBinder* proxy) = 0;
};

}  // namespace zarvo::host
