#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "host/binder/RecycledBlock.h"

namespace zarvo::host {

/**
 * The bytes of a parcel: few lie in the object itself, more in a block that doubles, or grows at
 * once to what one write needs and some more. Never longer than an int32_t can tell. Not
 * thread-safe.
 */
class ParcelBuffer {
  public:
    ParcelBuffer() = default;
    ParcelBuffer(const ParcelBuffer&) = delete;
    ParcelBuffer& operator=(const ParcelBuffer&) = delete;

    const uint8_t* Data() const { return mData; }
    size_t Size() const { return mSize; }

    /**
     * Makes the bytes reach to `position` + `length`; what lies between the old end and `position`
     * becomes zero, the rest is the caller's to fill. The place of `position`, or null for want of
     * memory.
     */
    uint8_t* Extend(size_t position, size_t length) {
        if (position > kLongest || length > kLongest - position) return nullptr;
        const size_t end = position + length;
        if (end > mCapacity && !Grow(end)) return nullptr;
        if (position > mSize) std::memset(mData + mSize, 0, position - mSize);
        mSize = std::max(mSize, end);
        return mData + position;
    }
    /** Makes room for that many bytes and no more; false for want of memory. */
    bool Reserve(size_t capacity);
    void Clear() { mSize = 0; }

  private:
    static constexpr size_t kLongest = INT32_MAX;
    /** Most replies and many calls. */
    static constexpr size_t kInObject = 128;

    bool Grow(size_t end);

    std::array<uint8_t, kInObject> mFew;
    RecycledBlock mBlock;
    uint8_t* mData = mFew.data();
    size_t mSize = 0;
    size_t mCapacity = kInObject;
};

}  // namespace zarvo::host
