#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "host/binder/Session.h"
#include "host/binder/TaskThread.h"
#include "host/binder/rpc/AddressTable.h"
#include "host/binder/rpc/Channels.h"
#include "host/binder/rpc/ThreadSet.h"
#include "host/binder/rpc/Wire.h"

namespace zarvo::host {

/**
 * One end of a session between two processes, or between two sides of one: a set of sockets over
 * which objects are named, called and let go.
 *
 * A call keeps one outgoing connection to its reply, and the calling thread serves what the other
 * end calls meanwhile on the same connection; a call made while serving goes back to the waiting
 * caller. Other calls of the other end arrive on incoming connections, each served by one thread.
 *
 * The session ends when one of its sockets does, when the other end breaks the protocol, when no
 * object is named any more, or by Terminate(); for good. All proxies are dead from then on, calls
 * under way give STATUS_DEAD_OBJECT, and death notices are given on a thread of their own, never
 * inside a call. Held by its proxies and serving threads. Thread-safe.
 */
class ABINDER_API RpcSession final : public Session,
                                     public std::enable_shared_from_this<RpcSession> {
  public:
    struct Settings {
        AddressTable::Side side = AddressTable::Side::kClient;
        uint32_t version = wire::kNewestVersion;
        /** How many threads this end has for calls of the other end; those it opens connections
         * for are told instead. */
        uint32_t threads = 0;
        wire::SessionId id{};
        /** Whether what a call brought is acknowledged together with its reply, in one message,
         * also if it failed; or at once, on a free connection, but not until a call succeeds. */
        bool acknowledgeWithReply = true;
        /** The object that the other end is given when it asks for the root. */
        std::function<Ref<AIBinder>()> root;
        /** Called once when the session has ended, with no lock held. */
        std::function<void()> onEnd;
    };

    using OpenUntil = std::function<Channels::Shared(Deadline)>;

    explicit RpcSession(Settings settings);
    ~RpcSession() override;

    bool IsAlive() const override { return mAlive.load(); }
    binder_status_t Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                             AParcel* reply, binder_flags_t flags) override;
    binder_status_t Lend(AIBinder* object, uint64_t* address) override;
    void TakeBack(uint64_t address) override;
    binder_status_t Resolve(uint64_t address, int32_t stability, AIBinder** object) override;
    void ProxyEnded(ProxyBinder* proxy) override;
    binder_status_t WatchForDeath() override;

    const Settings& Setup() const { return mSettings; }
    Channels& Outgoing() { return mOutgoing; }

    /** An empty parcel for a reply of this session. */
    std::unique_ptr<AParcel> NewReply() { return std::make_unique<AParcel>(Self()); }
    /** Asks the other end something of the session itself. */
    binder_status_t Ask(wire::SpecialCall call, AParcel* reply);
    /** Whether the other end answers on this connection, just opened; it may have too many, and the
     * session lives on without it. */
    bool IsTaken(Connection& connection);
    /** What the other end calls the session, and how this end lets itself be called; before
     * OpenIncoming, by the thread that asked. */
    void SetIncoming(const wire::SessionId& id, OpenUntil open);
    /** Opens connections on which the other end may call at any time, each with a thread, until
     * there are that many; waits for another thread that does. False if that failed, or took
     * longer than until `deadline`. */
    bool OpenIncoming(size_t count, Deadline deadline = Deadline::max());
    /** Serves what arrives on a connection, on this thread, until that or the session ends. */
    void Serve(const std::shared_ptr<Connection>& connection);

    void Terminate();
    /** After the end: waits until every death notice has been given; at once inside one. */
    void WaitForNotices();
    /** After the end: waits for the session's threads, or lets go of the one this is. */
    void JoinThreads();

  private:
    binder_status_t Call(Connection& connection, const wire::TransactBody& body, const AParcel& in,
                         AParcel* reply);
    binder_status_t AwaitReply(Connection& connection, AParcel* reply);
    binder_status_t ReceiveReply(Connection& connection, size_t bodyBytes, AParcel* reply);

    bool SpawnServing(const std::shared_ptr<Connection>& connection);
    void Enlist(const std::shared_ptr<Connection>& connection);
    void ServeListed(Connection& connection);

    // Of these, bool is false when the session has ended.

    bool ServeOne(Connection& connection);
    bool Handle(Connection& connection, const wire::CommandHeader& command);
    bool ServeDecStrong(Connection& connection, size_t bodyBytes);
    bool ServeTransact(Connection& connection, size_t bodyBytes);
    bool ServeSpecial(Connection& connection, const wire::TransactBody& body);
    bool ServeMethod(Connection& connection, const wire::TransactBody& body,
                     std::unique_ptr<AParcel> request);
    bool ServeOneway(Connection& connection, const wire::TransactBody& body,
                     std::unique_ptr<AParcel> request);
    binder_status_t Execute(Connection& connection, LocalBinder& target,
                            const wire::TransactBody& body, const AParcel& request, AParcel* reply);
    /** Replies, unless the call is oneway. */
    bool Answer(Connection& connection, const wire::TransactBody& call, binder_status_t status,
                const AParcel& reply);
    /** Receives `bytes`, of which a parcel has `announced` and places of descriptors the rest. */
    bool ReceiveParcel(Connection& connection, size_t announced, size_t bytes, AParcel* parcel,
                       bool* hasDescriptors);

    struct OwedBatch;

    /** Sends a command, behind all that is owed; if that is not much, in one message. Changes
     * `parts`. */
    bool Send(Connection& connection, std::span<iovec> parts);
    /** Takes the first of what is owed; true if there is more. */
    bool TakeOwed(OwedBatch* owed);
    bool SendBehind(Connection& connection, OwedBatch& owed, std::span<const iovec> parts);
    bool SendAlone(Connection& connection, std::span<iovec> parts);
    /** Notes that the other end is to be told that this arrived so often. */
    void Owe(uint64_t address, uint32_t amount);
    /** Sends what is owed on a free connection or else on `fallback`, which this thread serves;
     * without either it goes with the next message. */
    void SendOwed(Connection* fallback);
    bool OwesNothing();
    void EndIfUsedUp();
    /** Ends the session if that is what the table said; what it said. */
    binder_status_t EndIfDead(binder_status_t status);
    /** Ends the session because a socket did; false. */
    bool Lose();
    /** Ends the session for a fault of the other end; false. */
    bool Break(const char* reason);
    void GiveNotices();
    std::shared_ptr<Session> Self() { return shared_from_this(); }

    const Settings mSettings;
    std::atomic<bool> mAlive{true};
    AddressTable mTable;
    Channels mOutgoing;
    // Const after SetIncoming.
    wire::SessionId mId;
    OpenUntil mOpenIncoming;
    /** How many threads this end says it has for calls of the other end. */
    std::atomic<uint32_t> mThreads;
    std::mutex mOpeningMutex;
    size_t mIncomingOpened = 0;  // mOpeningMutex
    ThreadSet mServing;
    TaskThread mNotices;

    std::mutex mMutex;
    std::condition_variable mNoticed;
    // All of the following: mMutex.
    bool mNoticesGiven = false;
    std::deque<wire::DecStrongBody> mOwed;
    std::vector<std::weak_ptr<Connection>> mIncoming;
};

}  // namespace zarvo::host
