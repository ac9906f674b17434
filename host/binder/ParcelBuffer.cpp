#include "host/binder/ParcelBuffer.h"

#include <utility>

namespace zarvo::host {

namespace {

/** What is likely to follow, so that a message grows once: an event without its picture. */
constexpr size_t kRoom = 4096;

}  // namespace

bool ParcelBuffer::Grow(size_t end) {
    return Reserve(std::max(2 * mCapacity, end + kRoom));
}

bool ParcelBuffer::Reserve(size_t capacity) {
    if (capacity <= mCapacity) return true;
    RecycledBlock block = RecycledBlock::Of(capacity);
    if (block.Data() == nullptr) return false;
    auto* const data = static_cast<uint8_t*>(block.Data());
    std::memcpy(data, mData, mSize);
    mData = data;
    mCapacity = block.Size();
    mBlock = std::move(block);
    return true;
}

}  // namespace zarvo::host
