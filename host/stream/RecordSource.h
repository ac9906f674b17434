#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/mtkcam/aov_event.h"

namespace zarvo::host {

/**
 * Where a stream's records come from in place of the rendered scene: a row of them that is gone
 * through once, from run to run. The threads of the stream's runs call it, without any lock of the
 * stream, and it may take its time; a stopped run's thread may still be at it when the next one is.
 */
class RecordSource {
  public:
    virtual ~RecordSource() = default;

    /** How long after the one before, or after the run's start, the next record is due; nothing
     * when there is no more. */
    virtual std::optional<std::chrono::nanoseconds> NextDelay() = 0;
    /** Writes every byte of the next record; gives its number, or nothing when there is no more.
     * It stays the next one until it is claimed. */
    virtual std::optional<uint64_t> Write(aov_event& record) = 0;
    /** Called when the record of that number is about to be delivered: true for the first who
     * asks, and the next one's turn has come. */
    virtual bool Claim(uint64_t number) = 0;
};

}  // namespace zarvo::host
