#pragma once

#include <cstddef>
#include <cstdint>

namespace zarvo::host {

/**
 * The bytes of a parcel: a block that grows by half, or at once to what one write needs, and is
 * never longer than an int32_t can tell. Not thread-safe.
 */
class ParcelBuffer {
  public:
    ParcelBuffer() = default;
    ParcelBuffer(const ParcelBuffer&) = delete;
    ParcelBuffer& operator=(const ParcelBuffer&) = delete;
    ~ParcelBuffer();

    const uint8_t* Data() const { return mData; }
    size_t Size() const { return mSize; }

    /**
     * Makes the bytes reach to `position` + `length`; what lies between the old end and `position`
     * becomes zero, the rest is the caller's to fill. The place of `position`, or null for want of
     * memory.
     */
    uint8_t* Extend(size_t position, size_t length);
    void Clear() { mSize = 0; }

  private:
    bool Reserve(size_t capacity);

    uint8_t* mData = nullptr;
    size_t mSize = 0;
    size_t mCapacity = 0;
};

}  // namespace zarvo::host
