#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "host/recording/Recording.h"

namespace zarvo::host::recording {

/**
 * Writes a recording, each entry at once and whole, so that whatever ends the recorder leaves all
 * but the last. Used by one thread at a time.
 */
class RecordingWriter {
  public:
    using Time = std::chrono::nanoseconds;
    /** Takes bytes to where they are kept; false if it could not, and whose affair it is why. */
    using Output = std::function<bool(std::span<const uint8_t>)>;

    explicit RecordingWriter(Output output) : mOutput(std::move(output)) {}

    // Times are since the beginning; one that is before the latest one counts as that. Each is
    // false if the output was, or if the entry is too large for a recording.

    /** Comes first. */
    bool Begin(const SensorConfigInfo& config);
    bool Write(Time time, const AONCallBackInfo& event);
    bool Write(Time time, const AONSensorStateInfo& state);
    /** Nothing comes after it. */
    bool End(Time time, const EndNote& note);

    /** Bytes written so far. */
    uint64_t Size() const { return mSize; }

  private:
    template <typename T>
    bool WriteParcel(uint32_t kind, Time time, const T& value);
    bool WriteChunk(uint32_t kind, Time time);
    bool Put(std::span<const uint8_t> bytes);

    const Output mOutput;
    /** The chunk that is written, its header in front. */
    std::vector<uint8_t> mChunk;
    Time mTime{0};
    uint64_t mSize = 0;
};

}  // namespace zarvo::host::recording
