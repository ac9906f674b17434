#include "bench/Floors.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "events/ResultItems.h"

namespace zarvo::bench {

namespace {

constexpr size_t kMostResults = 14;

/** An array of a service's result; fusion's comes on top, its size varies. */
struct Array {
    uint32_t serviceType;
    size_t offset;
    size_t bytes;
};
constexpr Array kArrays[] = {{2, 214'784, 56}, {4, 209'152, 24}, {8, 227'840, 128}};

constexpr uint32_t kFusion = 1;
constexpr size_t kFusionItems = 199'688;
constexpr size_t kFusionItemBytes = 80;

}  // namespace

void CopyIntoFreshVector(std::span<const uint8_t> bytes) {
    const std::vector<uint8_t> copy(bytes.begin(), bytes.end());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
}

void ZeroThenCopy(std::span<const uint8_t> bytes) {
    std::vector<uint8_t> copy(bytes.size());
    benchmark::DoNotOptimize(copy.data());
    std::memcpy(copy.data(), bytes.data(), bytes.size());
    benchmark::ClobberMemory();
}

void CopyTwice(std::span<const uint8_t> bytes) {
    std::vector<uint8_t> local(bytes.size());
    benchmark::DoNotOptimize(local.data());
    std::memcpy(local.data(), bytes.data(), bytes.size());
    benchmark::ClobberMemory();
    const std::vector<uint8_t> copy(local);
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
}

void CopyArraysOf(uint32_t serviceType, uint32_t fusionItems, const uint8_t* output) {
    std::vector<aon::AONResult> list;
    list.reserve(kMostResults);
    benchmark::DoNotOptimize(list.data());
    if ((serviceType & kFusion) != 0) {
        CopyIntoFreshVector({output + kFusionItems, fusionItems * kFusionItemBytes});
    }
    for (const Array& array : kArrays) {
        if ((serviceType & array.serviceType) == 0) continue;
        CopyIntoFreshVector({output + array.offset, array.bytes});
    }
}

}  // namespace zarvo::bench
