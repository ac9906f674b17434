#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "host/binder/LocalBinder.h"
#include "host/binder/Parcel.h"
#include "host/binder/ProxyBinder.h"
#include "host/binder/Session.h"
#include "host/binder/rpc/Wire.h"

namespace zarvo::host {

/**
 * What one end of a session calls the objects that pass it: local ones by addresses it gives,
 * remote ones by those the other end gave, and how often each passed in either direction.
 *
 * An object sent, or called, is held until the other end has acknowledged it as often as that; so
 * it does not end while something is on the way. An address is forgotten when nothing is left to
 * acknowledge on either side. Owned by its session. Thread-safe; ends no object while its own lock
 * is held.
 */
class AddressTable {
  public:
    /** Which end it is: addresses tell who gave them. */
    enum class Side { kClient, kServer };

    /** A oneway call that has arrived. */
    struct Oneway {
        wire::TransactBody body;
        std::unique_ptr<AParcel> request;
    };
    /** How a call of a proxy was counted. */
    struct CountedCall {
        /** Of a oneway call. */
        uint64_t asyncNumber = 0;
        /** What the other end had acknowledged of the object before. */
        uint64_t acknowledged = 0;
    };
    /** Everything a table held when it closed. */
    struct Remains {
        std::vector<Ref<AIBinder>> held;
        std::vector<Ref<AIBinder>> proxies;
        std::vector<Oneway> oneways;
    };

    explicit AddressTable(Side side) : mSide(side) {}

    // Sending.

    /** Counts a local object that is written to a parcel. STATUS_DEAD_OBJECT when closed,
     * STATUS_NO_MEMORY when full. */
    binder_status_t Lend(LocalBinder* object, uint64_t* address);
    /** The same for a proxy of this session. */
    binder_status_t LendBack(const ProxyBinder* proxy);
    /** Counts a call of a proxy; for a oneway call also gives its number. Nothing when closed. */
    std::optional<CountedCall> BeginCall(uint64_t address, bool oneway);
    /** What was written once was not sent after all. */
    void TakeBack(uint64_t address);
    /** The other end acknowledges so many. */
    void TakeAcknowledgement(uint64_t address, uint64_t times);
    /** A call of a proxy came back without success. If nothing was acknowledged meanwhile, it will
     * be with the next that succeeds, if there is one. */
    void NoteFailure(uint64_t address, const CountedCall& call);

    // Receiving.

    /** The object for what arrived as `address`; a new proxy belongs to `session`. A local object
     * is to be acknowledged. STATUS_BAD_VALUE for what is no address or nobody's. */
    binder_status_t Receive(uint64_t address, int32_t stability,
                            const std::shared_ptr<Session>& session, Ref<AIBinder>* object);
    /** Counts a call that arrived; null if the address is none of a local object. */
    Ref<LocalBinder> BeginServe(uint64_t address);
    /** How often this local object arrived and was not acknowledged; it is from here on. */
    uint32_t Acknowledge(uint64_t address);
    /** The proxy ends: how often what it stands for has arrived, to be acknowledged; 0 if another
     * one has taken its place. */
    uint32_t Forget(const ProxyBinder* proxy);

    // Oneway calls of one object run one after the other, in the order of their numbers.

    /** Keeps a call until its turn; one whose number has had its turn is dropped. False if too
     * many wait, or too much. */
    bool Queue(uint64_t address, uint64_t asyncNumber, Oneway call);
    /** The call whose turn it is; the turn ends with EndOneway. */
    std::optional<Oneway> NextOneway(uint64_t address);
    void EndOneway(uint64_t address);

    /** Whether nothing is named any more, although something was; nothing enters it then. */
    bool CloseIfUsedUp();
    /** Empties the table; nothing enters it any more. */
    Remains Close();

  private:
    struct Node {
        explicit Node(AIBinder* binder) : object(binder->Refs()) {}

        WeakRef object;
        /** While sent > failed: while something may be on the way. */
        Ref<AIBinder> held;
        uint64_t sent = 0;
        /** Of these, calls that are over and not acknowledged. */
        uint64_t failed = 0;
        /** By the other end, ever. */
        uint64_t acknowledged = 0;
        uint64_t received = 0;
        /** Of the next oneway call, to send or to run. */
        uint64_t asyncNumber = 0;
        bool runsOneway = false;
        std::map<uint64_t, Oneway> waiting;
    };
    using Nodes = std::unordered_map<uint64_t, Node>;

    bool IsOwn(uint64_t address) const;
    uint64_t NewAddress();
    Nodes::iterator NodeOfLocal(LocalBinder* object);
    static void CountSent(Node& node, AIBinder* object);
    Ref<AIBinder> NewProxy(uint64_t address, int32_t stability,
                           const std::shared_ptr<Session>& session);
    /** Takes off so many of those sent; what was held, for the caller to drop without the lock. */
    Ref<AIBinder> CountBack(Nodes::iterator node, uint64_t times);
    /** What was held, for the caller to drop without the lock. */
    Ref<AIBinder> LetGoIfDone(Nodes::iterator node);
    void EraseIfDone(Nodes::iterator node);

    const Side mSide;
    mutable std::mutex mMutex;
    // All of the following: mMutex.
    bool mClosed = false;
    bool mUsed = false;
    uint32_t mNextNumber = 0;
    size_t mWaitingBytes = 0;
    Nodes mNodes;
    std::unordered_map<const RefBlock*, uint64_t> mLocals;
};

}  // namespace zarvo::host
