#include "platform/Published.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/History.h"

namespace zarvo::aon {
namespace {

struct Pair {
    int64_t first = 0;
    int32_t middle[5] = {};
    int64_t last = 0;
};

TEST(Published, IsReadWholeOrNotAtAllWhileItIsReplaced) {
    Published<Pair> published;
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int64_t i = 1; !done; ++i)
            published.Set({i, {}, i});
    });
    // Also when the writer never pauses, some reading succeeds in the end.
    for (int64_t latest = 0, seen = 0; seen < 1000;) {
        const auto pair = published.Get();
        if (!pair.has_value()) continue;
        ASSERT_EQ(pair->first, pair->last);
        ASSERT_GE(pair->first, latest);
        latest = pair->first;
        ++seen;
    }
    done = true;
    writer.join();
}

TEST(History, KeepsTheLatestInTheirOrder) {
    History history;
    EXPECT_TRUE(history.Latest().empty());
    const auto count = static_cast<int64_t>(History::kMost) + 5;
    for (int64_t i = 1; i <= count; ++i)
        history.Note({.what = "something", .clientHandle = i});
    const auto latest = history.Latest();
    ASSERT_EQ(latest.size(), History::kMost);
    EXPECT_EQ(latest.front().clientHandle, 6);
    EXPECT_EQ(latest.back().clientHandle, count);
    EXPECT_LE(latest.front().when.steady, latest.back().when.steady);
}

}  // namespace
}  // namespace zarvo::aon
