#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/mtkcam/aov_event.h"

namespace zarvo::bench {

/** What an event carries. */
struct Shape {
    uint32_t serviceType = 15;
    uint32_t stride = 640;
    uint32_t height = 480;
    uint32_t fusionItems = 2;

    constexpr size_t ImageBytes() const { return size_t{stride} * height * 3 / 2; }
};

/** The sizes of image that are measured. */
inline constexpr Shape k64Bytes{.stride = 43, .height = 1};
inline constexpr Shape k320x240{.stride = 320, .height = 240};
inline constexpr Shape k640x480{};
inline constexpr Shape k640x768{.height = 768};
inline constexpr Shape kNoImage{.stride = 0, .height = 0};

/** The bytes of the image that the event carries. */
inline std::span<const uint8_t> ImageOf(const aov_event& event, size_t bytes) {
    return std::span(event.imageInfo.pixels).first(bytes);
}

/**
 * Records of one shape, handed out in turn. Cold ones are so many that each has left the caches
 * when its turn comes again; warm is a single one, and so is that of a shape without image or with
 * a tiny one, too many of which it would take. All contestants of a race take theirs from the
 * same ring, or one would warm the other's. Used by one thread.
 */
class Records {
  public:
    enum class Source { kCold, kWarm };

    Records(const Shape& shape, Source source);

    aov_event& Next() {
        mNext = mNext + 1 == mCount ? 0 : mNext + 1;
        return mEvents[mNext];
    }

    /** Bytes of all the images of a cold shape. */
    static size_t ColdBytes(const Shape& shape);
    /** Bytes of the cache that cold records must not fit in, as the system tells. */
    static size_t LastLevelCache();

  private:
    const size_t mCount;
    /** In one block, which the allocator asks of the system: pages that nobody fills or reads are
     * never touched. */
    const std::unique_ptr<aov_event[]> mEvents;
    size_t mNext = 0;
};

}  // namespace zarvo::bench
