#include "host/binder/ParcelBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace zarvo::host {

namespace {

constexpr size_t kLongest = INT32_MAX;
constexpr size_t kSmallest = 128;

}  // namespace

ParcelBuffer::~ParcelBuffer() {
    std::free(mData);
}

uint8_t* ParcelBuffer::Extend(size_t position, size_t length) {
    if (position > kLongest || length > kLongest - position) return nullptr;
    const size_t end = position + length;
    if ((mData == nullptr || end > mCapacity) && !Reserve(end)) return nullptr;
    if (position > mSize) std::memset(mData + mSize, 0, position - mSize);
    mSize = std::max(mSize, end);
    return mData + position;
}

bool ParcelBuffer::Reserve(size_t capacity) {
    capacity = std::max({capacity, mCapacity + mCapacity / 2, kSmallest});
    void* const data = std::realloc(mData, capacity);
    if (data == nullptr) return false;
    mData = static_cast<uint8_t*>(data);
    mCapacity = capacity;
    return true;
}

}  // namespace zarvo::host
