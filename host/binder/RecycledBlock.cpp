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

/** Of this thread, the latest last. Without destructor: blocks end also after FreeAtEnd. */
struct Kept {
    std::array<Block, kMostBlocks + 1> blocks;
    size_t count;
    size_t bytes;
    bool isOver;
};

constinit thread_local Kept tKept{};
std::atomic<size_t> gKeptByAll{0};

Block TakeAt(Kept& kept, size_t index) {
    auto* const place = kept.blocks.begin() + index;
    const Block block = *place;
    std::move(place + 1, kept.blocks.begin() + kept.count, place);
    --kept.count;
    kept.bytes -= block.size;
    gKeptByAll.fetch_sub(block.size, std::memory_order_relaxed);
    return block;
}

struct FreeAtEnd {
    ~FreeAtEnd() {
        tKept.isOver = true;
        while (tKept.count > 0)
            std::free(TakeAt(tKept, 0).data);
    }
};

/** Blocks of like sizes shall do for each other. */
size_t Rounded(size_t bytes) {
    constexpr size_t kSmallest = 64;
    const size_t unit = std::max(kSmallest, std::bit_floor(bytes) / 4);
    return (bytes + unit - 1) & ~(unit - 1);
}

bool MayKeep(const Kept& kept, size_t size) {
    return !kept.isOver && kMostBlocks > 0 && size <= RecycledBlock::kMostKept &&
           gKeptByAll.load(std::memory_order_relaxed) + size <= RecycledBlock::kMostKeptByAll;
}

void Keep(Kept& kept, Block block) {
    static thread_local const FreeAtEnd freeAtEnd;
    static_cast<void>(freeAtEnd);
    while (kept.count == kMostBlocks || kept.bytes + block.size > RecycledBlock::kMostKept)
        std::free(TakeAt(kept, 0).data);
    kept.blocks[kept.count++] = block;
    kept.bytes += block.size;
    gKeptByAll.fetch_add(block.size, std::memory_order_relaxed);
}

}  // namespace

RecycledBlock RecycledBlock::Of(size_t bytes) {
    const size_t size = Rounded(bytes);
    Kept& kept = tKept;
    for (size_t i = kept.count; i-- > 0;) {
        const size_t found = kept.blocks[i].size;
        if (found < size || found > 2 * size) continue;
        return {TakeAt(kept, i).data, found};
    }
    void* const data = std::malloc(size);
    return data == nullptr ? RecycledBlock() : RecycledBlock(data, size);
}

RecycledBlock RecycledBlock::Adopt(void* data, size_t bytes) {
    return {data, Rounded(bytes)};
}

void RecycledBlock::Recycle() {
    Kept& kept = tKept;
    MayKeep(kept, mSize) ? Keep(kept, {mData, mSize}) : std::free(mData);
}

}  // namespace zarvo::host
