#pragma once

#include <cstddef>
#include <utility>

namespace zarvo::host {

/**
 * Owns a block of memory for bytes, or none. Blocks that end are kept for the next ones of the same
 * thread, so that a thread whose calls are alike allocates nothing for them.
 *
 * Kept are at most kMostKept bytes in a few blocks by a thread, the latest ones, and
 * kMostKeptByAll by the process; a thread's end frees its own. As thread-safe as a plain pointer;
 * a block may end on another thread than the one it was made on.
 */
class [[gnu::visibility("default")]] RecycledBlock {
  public:
    /** Room for one event with a picture. */
    static constexpr size_t kMostKept = size_t{1} << 20;
    static constexpr size_t kMostKeptByAll = 8 * kMostKept;

    RecycledBlock() = default;
    RecycledBlock(RecycledBlock && other) noexcept
        : mData(std::exchange(other.mData, nullptr)), mSize(std::exchange(other.mSize, 0)) {}
    RecycledBlock& operator=(RecycledBlock other) noexcept {
        std::swap(mData, other.mData);
        std::swap(mSize, other.mSize);
        return *this;
    }
    ~RecycledBlock() {
        if (mData != nullptr) Recycle();
    }

    /** A block of at least `bytes`, and not many more than twice that; none for want of memory. */
    static RecycledBlock Of(size_t bytes);

    void* Data() const {
        return mData;
    }
    size_t Size() const {
        return mSize;
    }
    /** Hands the block to the caller, for Adopt. */
    [[nodiscard]] void* Release() {
        mSize = 0;
        return std::exchange(mData, nullptr);
    }
    /** Takes a block back that Of(bytes) made. */
    static RecycledBlock Adopt(void* data, size_t bytes);

  private:
    RecycledBlock(void* data, size_t size) : mData(data), mSize(size) {}
    void Recycle();

    void* mData = nullptr;
    size_t mSize = 0;
};

}  // namespace zarvo::host
