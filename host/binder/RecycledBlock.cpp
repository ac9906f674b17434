#include "host/binder/RecycledBlock.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdlib>

namespace zarvo::host {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define AON_SEES_EVERY_USE 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define AON_SEES_EVERY_USE 1
#endif
#endif
#ifdef AON_SEES_EVERY_USE
// A sanitizer must see what is used after its end.
constexpr size_t kMostBlocks = 0;
#else
constexpr size_t kMostBlocks = 8;
#endif

struct Block {
    void* data;
    size_t size;
};

/** Of this thread, the latest last. Without destructor: blocks end also after kFreeAtEnd. */
struct Kept {
    std::array<Block, kMostBlocks + 1> blocks;
    size_t count;
    size_t bytes;
    bool isOver;
};

constinit thread_local Kept tKept{};
std::atomic<size_t> gKeptByAll{0};

Block TakeAt(size_t index) {
    auto* const place = tKept.blocks.begin() + index;
    const Block block = *place;
    std::move(place + 1, tKept.blocks.begin() + tKept.count, place);
    --tKept.count;
    tKept.bytes -= block.size;
    gKeptByAll.fetch_sub(block.size, std::memory_order_relaxed);
    return block;
}

struct FreeAtEnd {
    ~FreeAtEnd() {
        tKept.isOver = true;
        while (tKept.count > 0)
            std::free(TakeAt(0).data);
    }
};

/** Blocks of like sizes shall do for each other. */
size_t Rounded(size_t bytes) {
    constexpr size_t kSmallest = 64;
    const size_t unit = std::max(kSmallest, std::bit_floor(bytes) / 4);
    return (bytes + unit - 1) / unit * unit;
}

bool MayKeep(size_t size) {
    return !tKept.isOver && kMostBlocks > 0 && size <= RecycledBlock::kMostKept &&
           gKeptByAll.load(std::memory_order_relaxed) + size <= RecycledBlock::kMostKeptByAll;
}

void Keep(Block block) {
    static thread_local const FreeAtEnd freeAtEnd;
    static_cast<void>(freeAtEnd);
    while (tKept.count == kMostBlocks || tKept.bytes + block.size > RecycledBlock::kMostKept)
        std::free(TakeAt(0).data);
    tKept.blocks[tKept.count++] = block;
    tKept.bytes += block.size;
    gKeptByAll.fetch_add(block.size, std::memory_order_relaxed);
}

}  // namespace

RecycledBlock RecycledBlock::Of(size_t bytes) {
    const size_t size = Rounded(bytes);
    for (size_t i = tKept.count; i-- > 0;) {
        const Block& kept = tKept.blocks[i];
        if (kept.size < size || kept.size > 2 * size) continue;
        const Block block = TakeAt(i);
        return {block.data, block.size};
    }
    void* const data = std::malloc(size);
    return data == nullptr ? RecycledBlock() : RecycledBlock(data, size);
}

RecycledBlock RecycledBlock::Adopt(void* data, size_t bytes) {
    return {data, Rounded(bytes)};
}

void RecycledBlock::Recycle() {
    MayKeep(mSize) ? Keep({mData, mSize}) : std::free(mData);
}

}  // namespace zarvo::host
