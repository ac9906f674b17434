#pragma once

#include <cstdint>
#include <functional>

#include "platform/mtkcam/aov_event.h"

/**
 * Raw regions of an event's output, written to files for the bring-up of the detectors: one file
 * per region and frame in the folder "/data/aon", which must exist. Slow; runs on the stream's
 * thread. The regions are written whole, whatever the event says of its valid size.
 */
namespace zarvo::aon {

/** Writes `size` bytes from `base + offset` to `path`; see writeByteToFile. */
using RegionWriter =
        std::function<void(const uint8_t* base, int32_t offset, uint64_t size, const char* path)>;

/** Writes the files of the service types that the event carries; nothing for a null event. */
void dumpOutput(const aov_event* event);

/** The same through a writer of the caller's. */
void dumpOutput(const aov_event* event, const RegionWriter& write);

/**
 * Writes `size` bytes from `base + offset` to the file `path`, in place of what it held. A file
 * that cannot be opened is logged and passed over; a short write is not noticed.
 */
void writeByteToFile(const uint8_t* base, int32_t offset, uint64_t size, const char* path);

}  // namespace zarvo::aon
