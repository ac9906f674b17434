#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

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
