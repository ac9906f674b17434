#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "host/binder/AddressTable.h"
#include "host/binder/Parcel.h"
#include "host/binder/Session.h"
#include "host/binder/TaskThread.h"

namespace zarvo::host {

class LoopbackConnection;

/**
 * One end of a loopback connection: hands parcels straight to the other end, translated. Part of
 * its connection, which its proxies and parcels keep. Thread-safe.
 */
class LoopbackEnd final : public Session {
  public:
    LoopbackEnd(LoopbackConnection* connection, AddressTable::Side side, LoopbackEnd* peer)
        : mConnection(connection), mPeer(peer), mTable(side) {}

    bool IsAlive() const override;
    binder_status_t Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                             AParcel* reply, binder_flags_t flags) override;
    binder_status_t Lend(AIBinder* object, uint64_t* address) override;
    void TakeBack(AIBinder* object, uint64_t address) override;
    /** Refuses: what arrives has been translated, so such bytes are made up. */
    binder_status_t Resolve(uint64_t address, int32_t stability, AIBinder** object) override;
    void ProxyEnded(ProxyBinder* proxy) override;

    AddressTable& Table() { return mTable; }
    TaskThread& Oneways() { return mOneways; }
    /** This end, sharing the connection's life. */
    std::shared_ptr<Session> Self();
    /** The proxy at the other end for a local object of this one. */
    binder_status_t SendLocal(LocalBinder* object, Ref<AIBinder>* arrived);

  private:
    /** Fills a parcel of the other end with what a parcel of this end holds. */
    binder_status_t Send(const AParcel& parcel, AParcel* arrived);
    binder_status_t SendObject(const AParcel::Object& object, Ref<AIBinder>* arrived);
    binder_status_t Call(LocalBinder* target, transaction_code_t code, const AParcel& request,
                         AParcel* reply, binder_flags_t flags);
    binder_status_t Queue(Ref<LocalBinder> target, transaction_code_t code,
                          std::shared_ptr<AParcel> request, binder_flags_t flags);

    LoopbackConnection* const mConnection;
    LoopbackEnd* const mPeer;
    AddressTable mTable;
    /** Runs the oneway calls that arrive at this end. */
    TaskThread mOneways;
};

/**
 * The connection behind a Loopback, kept by it and by the proxies and parcels of both ends.
 * Thread-safe; see Loopback.
 */
class LoopbackConnection : public std::enable_shared_from_this<LoopbackConnection> {
  public:
    LoopbackConnection();

    /** Offers `root` and gets the threads that notices need; false without them. */
    bool Open(LocalBinder* root);
    Ref<AIBinder> Root();
    void Kill();
    void WaitForNotices();
    /** After Kill: waits for the threads, or lets them go if this is one of them. */
    void JoinThreads();

    bool IsAlive() const { return mAlive.load(); }

  private:
    void GiveNotices(const std::vector<Ref<AIBinder>>& proxies);

    LoopbackEnd mServer;
    LoopbackEnd mClient;
    uint64_t mRootAddress = 0;   // const after Open
    int32_t mRootStability = 0;  // const after Open
    std::atomic<bool> mAlive{true};

    std::mutex mMutex;
    std::condition_variable mNoticed;
    bool mNoticesGiven = false;  // mMutex
    TaskThread mNotices;
};

}  // namespace zarvo::host
