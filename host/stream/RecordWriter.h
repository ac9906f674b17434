#pragma once

#include <cstdint>

#include "host/stream/SimulatorControl.h"
#include "host/stream/scene/Cast.h"
#include "platform/mtkcam/aov_event.h"

namespace zarvo::host {

/** What a record is rendered for. */
struct RenderConfig {
    uint64_t seed = 0;
    Cast cast = Cast::kStory;
    /** Pixels, at least 1 each; FitsRecord() holds. */
    int32_t width = 0, height = 0;
    /** Frames per second, at least 1. */
    int32_t frameRate = 1;
    /** Services whose blocks are written; the detector's blocks and the images always are. */
    int32_t serviceTypes = 0;
};

/** Whether a picture of this size has at least one pixel and room in an image block. */
[[gnu::visibility("default")]] bool FitsRecord(int64_t width, int64_t height);

/**
 * Renders frame `frame` of the seed's scene, which lies `frame` / `frameRate` seconds after its
 * beginning: every byte of the record is written, and depends on the arguments alone. `imageInfo`
 * holds the picture, `debugImageInfo` the same with what the detector found drawn in.
 */
[[gnu::visibility("default")]] void RenderScene(const RenderConfig& config, uint32_t frame,
                                                aov_event& event);

/** Makes a rendered record lie. */
void ApplyFaults(const RecordFaults& faults, aov_event& event);

}  // namespace zarvo::host
