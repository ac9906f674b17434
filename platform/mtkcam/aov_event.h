#pragma once

#include <cstddef>
#include <cstdint>

/**
 * The event record of the always-on-vision stream, as far as this system reads it. The stream
 * owns it and lends it for the length of one callback. Little-endian; every byte is the stream's
 * word, not checked by anyone before us.
 */

/** An image: a luma plane of `height` rows of `stride` bytes, then the chroma plane, 4:2:0. */
struct aov_image_info {
    static constexpr size_t kPixelCapacity = 737'316;

    uint32_t height;
    uint32_t reserved;
    uint32_t stride;
    uint8_t pixels[kPixelCapacity];
};

struct aov_event {
    static constexpr size_t kOutputCapacity = 262'172;

    uint8_t reserved0[8];
    uint32_t frame_id;
    uint32_t frame_width;
    uint32_t frame_height;
    uint8_t reserved1[4];
    uint32_t serviceType;
    uint8_t reserved2[34'824];
    uint32_t outputSize;
    uint8_t output[kOutputCapacity];
    aov_image_info imageInfo;
    aov_image_info debugImageInfo;
};

static_assert(offsetof(aov_image_info, height) == 0);
static_assert(offsetof(aov_image_info, stride) == 8);
static_assert(offsetof(aov_image_info, pixels) == 12);

static_assert(offsetof(aov_event, frame_id) == 8);
static_assert(offsetof(aov_event, frame_width) == 12);
static_assert(offsetof(aov_event, frame_height) == 16);
static_assert(offsetof(aov_event, serviceType) == 24);
static_assert(offsetof(aov_event, outputSize) == 34'852);
static_assert(offsetof(aov_event, output) == 34'856);
static_assert(offsetof(aov_event, imageInfo) == 297'028);
static_assert(offsetof(aov_event, debugImageInfo) == 1'034'356);
static_assert(sizeof(aov_event) == 1'771'684);
