#pragma once

#include <cstdint>
#include <vector>

#include "events/ResultItems.h"
#include "platform/mtkcam/aov_event.h"

/**
 * The decoders of an event's result blocks. Each appends the items of its block to `results` and
 * touches nothing else; they run on the stream's thread and take no locks.
 *
 * `output` is the start of the record's output region, whole, and `size` the number of its bytes
 * that the stream calls valid (32 bits in the record; three decoders take it widened). A block that
 * does not end before `size`, with at least one byte to spare, is refused: one log line, no item.
 * Numbers inside the blocks are passed on as they are.
 */
namespace zarvo::aon {

/**
 * Keys 100 to 103. At most 30 items are filled, whatever the block's count says; key 101 reports
 * the count as received. Up to 13,107 items key 103 has 20 floats for each of them, beyond that
 * it has those of 30 items.
 */
void ParseFusionResult(std::vector<AONResult>& results, const uint8_t* output, uint32_t size);

/** Key 200: 14 floats. */
void ParseFaceAngleResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size);

/** Key 300: 6 floats. */
void ParseGazeResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size);

/** Key 400: 128 bytes. */
void ParseFaceFeatureResult(std::vector<AONResult>& results, const uint8_t* output, uint64_t size);

/**
 * Keys 700 to 703, from the image block that the debug-buffer property selects; nothing when the
 * block's stride or height is 0. Pixels that the block has no room for are cut off.
 */
void ParseImageData(std::vector<AONResult>& results, const aov_event* event);

}  // namespace zarvo::aon
