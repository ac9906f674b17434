#include "host/binder/RecycledBlock.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace tests {
namespace {

using zarvo::host::RecycledBlock;

constexpr size_t kMostKept = RecycledBlock::kMostKept;

/** Of a thread of its own, which keeps nothing yet. */
template <typename Job>
void OnNewThread(Job job) {
    std::thread(job).join();
}

void EndBlocksOf(const std::vector<size_t>& sizes) {
    std::vector<RecycledBlock> blocks;
    for (const size_t size : sizes)
        blocks.push_back(RecycledBlock::Of(size));
    for (RecycledBlock& block : blocks)
        block = {};
}

TEST(RecycledBlock, KeepsTheLatestOfAThreadThatAreNotTooLarge) {
    struct Case {
        const char* what;
        std::vector<size_t> ended;
        size_t wanted;
        // A fresh block has another size.
        std::optional<size_t> found;
    };
    const Case cases[] = {
            {"the same", {2048}, 2048, 2048},
            {"a larger one", {2048}, 1100, 2048},
            {"more than twice as large", {2048}, 800, {}},
            {"too small", {1024}, 1100, {}},
            {"the latest that fits", {2048, 1792, 512}, 1100, 1792},
            {"all that may be", {kMostKept}, kMostKept - kMostKept / 3, kMostKept},
            {"more than may be kept", {kMostKept + 1}, kMostKept - kMostKept / 3, {}},
            {"eight", {2048, 64, 64, 64, 64, 64, 64, 64}, 1100, 2048},
            {"the ninth in place of the first", {2048, 64, 64, 64, 64, 64, 64, 64, 64}, 1100, {}},
            {"bytes in place of the first", {2048, kMostKept}, 1100, {}},
    };
    for (const Case& test : cases) {
        OnNewThread([&test] {
            const size_t fresh = RecycledBlock::Of(test.wanted).Size();
            EndBlocksOf(std::vector<size_t>(8, 64));
            EndBlocksOf(test.ended);
            EXPECT_EQ(RecycledBlock::Of(test.wanted).Size(), test.found.value_or(fresh))
                    << test.what;
        });
    }
}

TEST(RecycledBlock, ThreadsThatEndGiveBackWhatTheyKept) {
    for (int i = 0; i < 100; ++i)
        OnNewThread([] { EndBlocksOf({kMostKept}); });
    EndBlocksOf({2048});
    EXPECT_EQ(RecycledBlock::Of(1100).Size(), 2048U);
}

}  // namespace
}  // namespace tests
