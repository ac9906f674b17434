#include "host/binder/RecycledBlock.h"

#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdlib>

namespace zarvo::host {

namespace {

constexpr size_t kMostBlocks = 8;

struct Block {
    void* data;
    size_t size;
};

/** Of this thread, the latest last. Without destructor: blocks end also after FreeAtEnd. */
struct Kept {
    std::array<Block, kMostBlocks> blocks;
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
    ASAN_UNPOISON_MEMORY_REGION(block.data, block.size);
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

/** Counts the bytes as kept, unless that would be too many. */
bool Reserve(size_t bytes) {
    const size_t before = gKeptByAll.fetch_add(bytes, std::memory_order_relaxed);
    if (before + bytes <= RecycledBlock::kMostKeptByAll) return true;
    gKeptByAll.fetch_sub(bytes, std::memory_order_relaxed);
    return false;
}

/** False if the block is not to be kept. */
bool Keep(Kept& kept, Block block) {
    if (kept.isOver || block.size > RecycledBlock::kMostKept) return false;
    static thread_local const FreeAtEnd freeAtEnd;
    static_cast<void>(freeAtEnd);
    while (kept.count == kMostBlocks || kept.bytes + block.size > RecycledBlock::kMostKept)
        std::free(TakeAt(kept, 0).data);
    if (!Reserve(block.size)) return false;
    // Whoever uses it after its end is told of by the address sanitizer.
    ASAN_POISON_MEMORY_REGION(block.data, block.size);
    kept.blocks[kept.count++] = block;
    kept.bytes += block.size;
    return true;
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
    if (!Keep(tKept, {mData, mSize})) std::free(mData);
}

}  // namespace zarvo::host
