#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

namespace {

/** The other end owes no more for what a full socket holds. */
constexpr size_t kMostReceivedWhileSending = 4096;

/** Room for the largest event, so that it is sent at once and wakes the other end once.
 * Where the system allows less, a large one goes out in parts as they are taken. */
constexpr int kMostUnreceived = 1 << 20;

}  // namespace

Connection::Connection(Socket socket) : mSocket(std::move(socket)), mPeer(mSocket.Peer()) {
    mSocket.SetRoomForUnreceived(kMostUnreceived);
}

bool Connection::Send(std::span<iovec> parts, Acknowledgements* received) {
    bool receives = true;
    while (mSocket.SendSome(&parts)) {
        if (parts.empty()) return true;
        if (mSocket.WaitToSend(receives)) receives = ReceiveAcknowledgement(received);
    }
    return false;
}

bool Connection::ReceiveAcknowledgement(Acknowledgements* received) {
    wire::CommandHeader command{};
    wire::DecStrongBody body{};
    if (received->size() >= kMostReceivedWhileSending || !Peek(&command)) return false;
    if (command.command != wire::kDecStrong || command.bodyBytes != sizeof(body)) return false;
    if (!Receive(&command) || !Receive(&body)) return false;
    received->push_back(body);
    return true;
}

bool Connection::Peek(wire::CommandHeader* command) {
    std::copy(mAhead.begin() + static_cast<ptrdiff_t>(mBegin),
              mAhead.begin() + static_cast<ptrdiff_t>(mEnd), mAhead.begin());
    mEnd -= std::exchange(mBegin, 0);
    while (mEnd < sizeof(*command)) {
        const size_t received = mSocket.Receive(mAhead.data() + mEnd, sizeof(*command) - mEnd);
        if (received == 0) return false;
        mEnd += received;
    }
    std::memcpy(command, mAhead.data(), sizeof(*command));
    return true;
}

size_t Connection::TakeAhead(uint8_t* to, size_t length) {
    const size_t taken = std::min(length, mEnd - mBegin);
    std::memcpy(to, mAhead.data() + mBegin, taken);
    mBegin += taken;
    return taken;
}

bool Connection::Receive(uint8_t* to, size_t length) {
    while (length > 0) {
        const size_t taken = TakeAhead(to, length);
        to += taken;
        length -= taken;
        if (length == 0) break;
        if (length >= mAhead.size()) return mSocket.ReceiveAll(to, length);
        mBegin = 0;
        mEnd = mSocket.Receive(mAhead.data(), mAhead.size());
        if (mEnd == 0) return false;
    }
    return true;
}

bool Connection::Skip(size_t length) {
    std::array<uint8_t, 256> unwanted;
    while (length > 0) {
        const size_t part = std::min(length, unwanted.size());
        if (!Receive(unwanted.data(), part)) return false;
        length -= part;
    }
    return true;
}

}  // namespace zarvo::host
