#include "bench/Records.h"

#include <algorithm>
#include <cstring>
#include <fstream>

namespace zarvo::bench {

namespace {

/** The stream's own number for its output. */
constexpr uint32_t kOutputBytes = 228'096;
constexpr size_t kFusionOffset = 199'680;
constexpr size_t kCaches = 4;
constexpr size_t kMostRecords = 2048;
constexpr size_t kTinyImage = 4096;

/** Any bytes do, as long as they are not all the same page of zeros. */
void FillBytes(std::span<uint8_t> bytes, uint32_t seed) {
    for (uint8_t& byte : bytes) {
        seed = seed * 1'664'525 + 1'013'904'223;
        byte = static_cast<uint8_t>(seed >> 24);
    }
}

void FillFusion(aov_event& event, uint32_t items) {
    std::memcpy(event.output + kFusionOffset, &items, sizeof(items));
}

void Fill(aov_event& event, const Shape& shape, uint32_t number) {
    event.frame_id = number;
    event.frame_width = shape.stride;
    event.frame_height = shape.height;
    event.serviceType = shape.serviceType;
    event.outputSize = kOutputBytes;
    FillBytes(std::span(event.output).subspan(kFusionOffset, kOutputBytes - kFusionOffset), number);
    FillFusion(event, shape.fusionItems);
    event.imageInfo.height = shape.height;
    event.imageInfo.stride = shape.stride;
    FillBytes(std::span(event.imageInfo.pixels).first(shape.ImageBytes()), number);
}

size_t CountOf(const Shape& shape, Records::Source source) {
    if (source == Records::Source::kWarm || shape.ImageBytes() < kTinyImage) return 1;
    const size_t wanted = kCaches * Records::LastLevelCache() / shape.ImageBytes() + 1;
    return std::min(wanted, kMostRecords);
}

}  // namespace

Records::Records(const Shape& shape, Source source)
    : mCount(CountOf(shape, source)), mEvents(std::make_unique_for_overwrite<aov_event[]>(mCount)) {
    for (size_t i = 0; i < mCount; ++i)
        Fill(mEvents[i], shape, static_cast<uint32_t>(i));
}

size_t Records::ColdBytes(const Shape& shape) {
    return CountOf(shape, Source::kCold) * shape.ImageBytes();
}

size_t Records::LastLevelCache() {
    constexpr size_t kUnknown = size_t{32} << 20;
    std::ifstream file("/sys/devices/system/cpu/cpu0/cache/index3/size");
    size_t kibibytes = 0;
    return file >> kibibytes && kibibytes > 0 ? kibibytes << 10 : kUnknown;
}

}  // namespace zarvo::bench
