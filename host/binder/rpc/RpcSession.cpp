#include "host/binder/rpc/RpcSession.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/binder/BinderLog.h"
#include "host/binder/rpc/CallContext.h"

namespace zarvo::host {

RpcSession::RpcSession(Settings settings)
    : mSettings(std::move(settings)),
      mTable(mSettings.side),
      mId(mSettings.id),
      mThreads(mSettings.threads) {}

RpcSession::~RpcSession() {
    Terminate();
}

/* Calls to the other end. */

binder_status_t RpcSession::Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                                     AParcel* reply, binder_flags_t flags) {
    if (!IsAlive()) return STATUS_DEAD_OBJECT;
    if (in.Size() > wire::kMostParcelBytes) {
        BINDER_LOGE("a call of %zu bytes is too large to send", in.Size());
        return STATUS_FAILED_TRANSACTION;
    }
    wire::TransactBody body{};
    body.address = address;
    body.code = code;
    body.flags = flags;
    body.parcelBytes = static_cast<uint32_t>(in.Size());
    const bool oneway = (flags & FLAG_ONEWAY) != 0;
    Connection* const caller = CallContext::WaitingCaller(this);
    if (caller != nullptr && !oneway) return Call(*caller, body, in, reply);
    Channels::Shared connection;
    const binder_status_t status = mOutgoing.Acquire(oneway, caller, &connection);
    if (status != STATUS_OK) return status;
    const binder_status_t result = Call(*connection, body, in, reply);
    mOutgoing.Release(connection);
    SendOwed(nullptr);
    return result;
}

binder_status_t RpcSession::Ask(wire::SpecialCall call, AParcel* reply) {
    const AParcel nothing{};
    return Transact(0, call, nothing, reply, 0);
}

bool RpcSession::IsTaken(Connection& connection) {
    wire::TransactBody body{};
    body.code = wire::kGetMaxThreads;
    wire::CommandHeader command{};
    command.command = wire::kTransact;
    command.bodyBytes = sizeof(body);
    std::array parts{iovec{&command, sizeof(command)}, iovec{&body, sizeof(body)}};
    AParcel reply;
    const CallContext context(this, &connection, CallContext::Role::kCalls);
    // Takes nothing along that would be lost with the connection. Who has begun to answer took it.
    return connection.Send(parts) && connection.Peek(&command) &&
           AwaitReply(connection, &reply) == STATUS_OK;
}

binder_status_t RpcSession::Call(Connection& connection, const wire::TransactBody& body,
                                 const AParcel& in, AParcel* reply) {
    wire::TransactBody sent = body;
    const bool oneway = (body.flags & FLAG_ONEWAY) != 0;
    std::optional<AddressTable::CountedCall> counted;
    if (body.address != 0) {
        counted = mTable.BeginCall(body.address, oneway);
        if (!counted) return STATUS_DEAD_OBJECT;
        sent.asyncNumber = counted->asyncNumber;
    }
    wire::CommandHeader command{};
    command.command = wire::kTransact;
    command.bodyBytes = static_cast<uint32_t>(sizeof(sent) + in.Size());
    in.HandOver();
    std::array parts{iovec{&command, sizeof(command)}, iovec{&sent, sizeof(sent)},
                     iovec{const_cast<uint8_t*>(in.Data()), in.Size()}};
    const CallContext context(this, &connection, CallContext::Role::kCalls);
    if (!Send(connection, parts)) return STATUS_DEAD_OBJECT;
    if (oneway) return STATUS_OK;
    const binder_status_t status = AwaitReply(connection, reply);
    if (status != STATUS_OK && counted) mTable.NoteFailure(body.address, *counted);
    return status;
}

binder_status_t RpcSession::AwaitReply(Connection& connection, AParcel* reply) {
    while (true) {
        wire::CommandHeader command{};
        if (!connection.Receive(&command)) {
            Lose();
            return STATUS_DEAD_OBJECT;
        }
        if (command.command == wire::kReply) {
            return ReceiveReply(connection, command.bodyBytes, reply);
        }
        if (!Handle(connection, command)) return STATUS_DEAD_OBJECT;
    }
}

binder_status_t RpcSession::ReceiveReply(Connection& connection, size_t bodyBytes, AParcel* reply) {
    const bool isShort = mSettings.version == 0;
    wire::ReplyBody body{};
    const size_t headBytes = isShort ? wire::kReplyBodyBytesOfVersion0 : sizeof(body);
    bool hasDescriptors = false;
    if (bodyBytes < headBytes) {
        Break("a reply is too short");
    } else if (bodyBytes - headBytes > wire::kMostParcelBytes) {
        Break("a reply is too long");
    } else if (!connection.Receive(reinterpret_cast<uint8_t*>(&body), headBytes)) {
        Lose();
    } else if (const size_t rest = bodyBytes - headBytes;
               ReceiveParcel(connection, isShort ? rest : body.parcelBytes, rest, reply,
                             &hasDescriptors)) {
        if (body.status != STATUS_OK) reply->Reset();
        return hasDescriptors ? STATUS_BAD_VALUE : body.status;
    }
    return STATUS_DEAD_OBJECT;
}

bool RpcSession::ReceiveParcel(Connection& connection, size_t announced, size_t bytes,
                               AParcel* parcel, bool* hasDescriptors) {
    if (announced > bytes) return Break("a parcel is longer than its message");
    const size_t positions = bytes - announced;
    if (positions % sizeof(uint32_t) != 0) return Break("half a position");
    uint8_t* const place = parcel->ForBytes(announced);
    if (place == nullptr) return Break("no memory for a message");
    *hasDescriptors = positions != 0;
    return (connection.Receive(place, announced) && connection.Skip(positions)) || Lose();
}

/* What every message takes along. */

/** Acknowledgements that go out in one message. */
struct RpcSession::OwedBatch {
    static constexpr size_t kMost = 16;

    std::array<wire::DecStrongBody, kMost> bodies;
    size_t count = 0;
};

bool RpcSession::Send(Connection& connection, std::span<iovec> parts) {
    OwedBatch owed;
    while (TakeOwed(&owed)) {
        if (!SendBehind(connection, owed, {})) return false;
    }
    return owed.count == 0 ? SendAlone(connection, parts) : SendBehind(connection, owed, parts);
}

bool RpcSession::TakeOwed(OwedBatch* owed) {
    const std::lock_guard lock(mMutex);
    owed->count = std::min(mOwed.size(), owed->bodies.size());
    const auto end = mOwed.begin() + static_cast<ptrdiff_t>(owed->count);
    std::copy(mOwed.begin(), end, owed->bodies.begin());
    mOwed.erase(mOwed.begin(), end);
    return !mOwed.empty();
}

bool RpcSession::SendBehind(Connection& connection, OwedBatch& owed, std::span<const iovec> parts) {
    std::array<iovec, 2 * OwedBatch::kMost + 4> all;
    wire::CommandHeader command{};
    command.command = wire::kDecStrong;
    command.bodyBytes = sizeof(wire::DecStrongBody);
    for (size_t i = 0; i < owed.count; ++i) {
        all[2 * i] = {&command, sizeof(command)};
        all[2 * i + 1] = {&owed.bodies[i], sizeof(owed.bodies[i])};
    }
    const size_t before = 2 * owed.count;
    std::copy(parts.begin(), parts.end(), all.begin() + static_cast<ptrdiff_t>(before));
    return SendAlone(connection, std::span(all).first(before + parts.size()));
}

bool RpcSession::SendAlone(Connection& connection, std::span<iovec> parts) {
    Connection::Acknowledgements received;
    if (!connection.Send(parts, &received)) return Lose();
    // Not before the whole message is out: what ends here may send, too.
    for (const wire::DecStrongBody& body : received)
        mTable.TakeAcknowledgement(body.address, body.amount);
    return true;
}

void RpcSession::Owe(uint64_t address, uint32_t amount) {
    if (amount == 0) return;
    const std::lock_guard lock(mMutex);
    mOwed.push_back({address, amount, 0});
}

bool RpcSession::OwesNothing() {
    const std::lock_guard lock(mMutex);
    return mOwed.empty();
}

void RpcSession::SendOwed(Connection* fallback) {
    while (IsAlive() && !OwesNothing()) {
        const Channels::Shared connection = mOutgoing.TryAcquire();
        if (connection != nullptr) {
            Send(*connection, {});
            mOutgoing.Release(connection);
        } else if (fallback != nullptr) {
            Send(*fallback, {});
        } else {
            // Whoever has a connection in use sends it with his next message, or after his last.
            return;
        }
    }
}

/* Objects. */

binder_status_t RpcSession::Lend(AIBinder* object, uint64_t* address) {
    if (LocalBinder* const local = object->AsLocal(); local != nullptr) {
        return EndIfDead(mTable.Lend(local, address));
    }
    const ProxyBinder* const proxy = object->AsProxy();
    if (!proxy->IsOf(this)) return STATUS_INVALID_OPERATION;
    *address = proxy->Address();
    return mTable.LendBack(proxy);
}

void RpcSession::TakeBack(uint64_t address) {
    mTable.TakeBack(address);
}

binder_status_t RpcSession::Resolve(uint64_t address, int32_t stability, AIBinder** object) {
    Ref<AIBinder> found;
    const auto status = EndIfDead(mTable.Receive(address, stability, Self(), &found));
    if (status != STATUS_OK) return status;
    if (found->AsLocal() != nullptr) {
        Owe(address, mTable.Acknowledge(address));
        // Otherwise it travels with the reply to who waits.
        if (CallContext::WaitingCaller(this) == nullptr) SendOwed(nullptr);
    }
    *object = found.Release();
    return STATUS_OK;
}

void RpcSession::ProxyEnded(ProxyBinder* proxy) {
    const uint32_t amount = mTable.Forget(proxy);
    EndIfUsedUp();
    if (!IsAlive()) return;
    Owe(proxy->Address(), amount);
    SendOwed(nullptr);
}

binder_status_t RpcSession::WatchForDeath() {
    {
        const std::lock_guard lock(mMutex);
        if (mIncoming.empty()) return STATUS_INVALID_OPERATION;
    }
    if (mNotices.Start()) return STATUS_OK;
    return IsAlive() ? STATUS_NO_MEMORY : STATUS_DEAD_OBJECT;
}

/* The end. */

void RpcSession::EndIfUsedUp() {
    if (mTable.CloseIfUsedUp()) Terminate();
}

binder_status_t RpcSession::EndIfDead(binder_status_t status) {
    // The table was used up a moment ago; whoever noticed is about to end the session.
    if (status == STATUS_DEAD_OBJECT) Terminate();
    return status;
}

bool RpcSession::Lose() {
    Terminate();
    return false;
}

bool RpcSession::Break(const char* reason) {
    // What arrives while the session ends finds it half gone.
    if (IsAlive()) BINDER_LOGE("session ended, the other end broke the protocol: %s", reason);
    Terminate();
    return false;
}

void RpcSession::Terminate() {
    if (!mAlive.exchange(false)) return;
    mOutgoing.Close();
    {
        const std::lock_guard lock(mMutex);
        for (const auto& incoming : mIncoming) {
            if (const auto connection = incoming.lock()) connection->Shutdown();
        }
    }
    GiveNotices();
    if (mSettings.onEnd) mSettings.onEnd();
}

void RpcSession::GiveNotices() {
    // What was held for the other end goes there, too: this thread may be inside a call.
    const auto remains = std::make_shared<AddressTable::Remains>(mTable.Close());
    const auto give = [this, remains, self = weak_from_this().lock()] {
        for (const auto& proxy : remains->proxies)
            proxy->AsProxy()->NotifyDeath();
        *remains = {};
        const std::lock_guard lock(mMutex);
        mNoticesGiven = true;
        mNoticed.notify_all();
    };
    // Without a thread nobody was promised one; nor is there anyone to tell at the very end.
    if (weak_from_this().expired() || !mNotices.Post(give)) give();
    mNotices.Finish();
}

void RpcSession::WaitForNotices() {
    if (IsAlive() || mNotices.IsThisThread()) return;
    std::unique_lock lock(mMutex);
    mNoticed.wait(lock, [this] { return mNoticesGiven; });
}

void RpcSession::JoinThreads() {
    mServing.JoinAll();
    mNotices.IsThisThread() ? mNotices.LetGo() : mNotices.Join();
}

}  // namespace zarvo::host
