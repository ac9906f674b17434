#include <array>
#include <utility>

#include "host/binder/BinderLog.h"
#include "host/binder/rpc/CallContext.h"
#include "host/binder/rpc/RpcSession.h"
#include "host/binder/rpc/Turn.h"

namespace zarvo::host {

/* What the other end sends unasked: calls, and acknowledgements. */

void RpcSession::Serve(const std::shared_ptr<Connection>& connection) {
    Enlist(connection);
    ServeListed(*connection);
}

void RpcSession::SetIncoming(const wire::SessionId& id, OpenUntil open) {
    mId = id;
    mOpenIncoming = std::move(open);
}

bool RpcSession::OpenIncoming(size_t count, Deadline deadline) {
    const std::lock_guard lock(mOpeningMutex);
    // The first one may be asked before the last one is open.
    if (mIncomingOpened < count) mThreads = static_cast<uint32_t>(count);
    for (; mIncomingOpened < count; ++mIncomingOpened) {
        const Channels::Shared connection = mOpenIncoming(deadline);
        if (connection == nullptr || !SpawnServing(connection)) return false;
    }
    return true;
}

bool RpcSession::SpawnServing(const std::shared_ptr<Connection>& connection) {
    Enlist(connection);
    return mServing.Spawn(
            [self = shared_from_this(), connection] { self->ServeListed(*connection); });
}

void RpcSession::Enlist(const std::shared_ptr<Connection>& connection) {
    const std::lock_guard lock(mMutex);
    mIncoming.push_back(connection);
}

void RpcSession::ServeListed(Connection& connection) {
    // Whoever ends the session from here on finds the connection listed.
    while (IsAlive() && ServeOne(connection)) {
    }
    connection.Shutdown();
}

bool RpcSession::ServeOne(Connection& connection) {
    wire::CommandHeader command{};
    if (!connection.Receive(&command)) return Lose();
    return Handle(connection, command);
}

bool RpcSession::Handle(Connection& connection, const wire::CommandHeader& command) {
    switch (command.command) {
        case wire::kTransact:
            return ServeTransact(connection, command.bodyBytes);
        case wire::kDecStrong:
            return ServeDecStrong(connection, command.bodyBytes);
        case wire::kReply:
            return Break("a reply to no call");
        default:
            return Break("an unknown command");
    }
}

bool RpcSession::ServeDecStrong(Connection& connection, size_t bodyBytes) {
    wire::DecStrongBody body{};
    if (bodyBytes != sizeof(body)) return Break("an acknowledgement has another length");
    if (!connection.Receive(&body)) return Lose();
    mTable.TakeAcknowledgement(body.address, body.amount);
    EndIfUsedUp();
    return IsAlive();
}

bool RpcSession::ServeTransact(Connection& connection, size_t bodyBytes) {
    wire::TransactBody body{};
    if (bodyBytes < sizeof(body)) return Break("a call is too short");
    if (bodyBytes - sizeof(body) > wire::kMostParcelBytes) return Break("a call is too long");
    if (!connection.Receive(&body)) return Lose();
    const size_t rest = bodyBytes - sizeof(body);
    auto request = std::make_unique<AParcel>(Self());
    bool hasDescriptors = false;
    if (!ReceiveParcel(connection, mSettings.version == 0 ? rest : body.parcelBytes, rest,
                       request.get(), &hasDescriptors)) {
        return false;
    }
    if (hasDescriptors || (body.address != 0 && !wire::IsAddress(body.address))) {
        return Answer(connection, body, STATUS_BAD_VALUE, AParcel());
    }
    if (body.address == 0) return ServeSpecial(connection, body);
    return (body.flags & FLAG_ONEWAY) != 0 ? ServeOneway(connection, body, std::move(request))
                                           : ServeMethod(connection, body, std::move(request));
}

bool RpcSession::ServeSpecial(Connection& connection, const wire::TransactBody& body) {
    AParcel reply(Self());
    binder_status_t status = STATUS_UNKNOWN_TRANSACTION;
    if (body.code == wire::kGetRoot) {
        const Ref<AIBinder> root = mSettings.root ? mSettings.root() : Ref<AIBinder>();
        status = reply.WriteObject(root.Get());
    } else if (body.code == wire::kGetMaxThreads) {
        status = reply.Write(mThreads.load());
    } else if (body.code == wire::kGetSessionId) {
        status = reply.Write(static_cast<uint32_t>(mId.size()));
        uint8_t* const place = reply.Append(mId.size());
        if (place == nullptr) return Break("no memory for a reply");
        std::memcpy(place, mId.data(), mId.size());
    }
    return Answer(connection, body, status, reply);
}

bool RpcSession::ServeMethod(Connection& connection, const wire::TransactBody& body,
                             std::unique_ptr<AParcel> request) {
    const Ref<LocalBinder> target = mTable.BeginServe(body.address);
    if (!target) return Break("a call of an unknown object");
    AParcel reply(Self());
    const binder_status_t status = Execute(connection, *target.Get(), body, *request, &reply);
    // What the callee did not keep of it is gone when the caller goes on.
    request.reset();
    // A caller may never make the next call, and would hold the session for this one for ever.
    if (status == STATUS_OK || mSettings.acknowledgeWithReply)
        Owe(body.address, mTable.Acknowledge(body.address));
    if (!mSettings.acknowledgeWithReply) SendOwed(nullptr);
    if (!Answer(connection, body, status, reply)) return false;
    EndIfUsedUp();
    return IsAlive();
}

bool RpcSession::ServeOneway(Connection& connection, const wire::TransactBody& body,
                             std::unique_ptr<AParcel> request) {
    const Ref<LocalBinder> target = mTable.BeginServe(body.address);
    if (!target) return Break("a call of an unknown object");
    if (!mTable.Queue(body.address, body.asyncNumber, {body, std::move(request)})) {
        return Break("too many oneway calls wait for an earlier one");
    }
    bool ran = false;
    while (IsAlive()) {
        const auto call = mTable.NextOneway(body.address);
        if (!call) break;
        AParcel unsent(Self());
        Execute(connection, *target.Get(), call->body, *call->request, &unsent);
        mTable.EndOneway(body.address);
        ran = true;
    }
    // One that waits keeps the object, until whoever runs it acknowledges both.
    if (ran) Owe(body.address, mTable.Acknowledge(body.address));
    SendOwed(&connection);
    EndIfUsedUp();
    return IsAlive();
}

binder_status_t RpcSession::Execute(Connection& connection, LocalBinder& target,
                                    const wire::TransactBody& body, const AParcel& request,
                                    AParcel* reply) {
    if (CallContext::Depth() >= wire::kMostNestedCalls) {
        BINDER_LOGE("a call is refused: it would be inside %d others", wire::kMostNestedCalls);
        return STATUS_FAILED_TRANSACTION;
    }
    const Turn turn;
    const bool oneway = (body.flags & FLAG_ONEWAY) != 0;
    const CallContext context(
            this, &connection,
            oneway ? CallContext::Role::kServesOneway : CallContext::Role::kServes);
    return target.Transact(body.code, request, reply, body.flags);
}

bool RpcSession::Answer(Connection& connection, const wire::TransactBody& call,
                        binder_status_t status, const AParcel& reply) {
    if (!IsAlive()) return false;
    if ((call.flags & FLAG_ONEWAY) != 0) return true;
    if (status == STATUS_OK && reply.Size() > wire::kMostParcelBytes) {
        BINDER_LOGE("a reply of %zu bytes is too large to send", reply.Size());
        status = STATUS_FAILED_TRANSACTION;
    }
    wire::ReplyBody body{};
    body.status = status;
    body.parcelBytes = status == STATUS_OK ? static_cast<uint32_t>(reply.Size()) : 0;
    const size_t headBytes =
            mSettings.version == 0 ? wire::kReplyBodyBytesOfVersion0 : sizeof(body);
    wire::CommandHeader command{};
    command.command = wire::kReply;
    command.bodyBytes = static_cast<uint32_t>(headBytes) + body.parcelBytes;
    if (status == STATUS_OK) reply.HandOver();
    std::array parts{iovec{&command, sizeof(command)}, iovec{&body, headBytes},
                     iovec{const_cast<uint8_t*>(reply.Data()), body.parcelBytes}};
    return Send(connection, parts);
}

}  // namespace zarvo::host
