#pragma once

#include <chrono>
#include <cstdint>
#include <istream>
#include <span>
#include <string>
#include <vector>

#include "host/recording/Chunk.h"

namespace zarvo::host::recording {

/** How it stands with a recording that is read. */
enum class ReadState {
    /** There may be more. */
    kReading,
    /** It is read to its end note. */
    kWhole,
    /** The bytes end before the end note does, as when the recorder was killed. All that was given
     * is as it was recorded. */
    kCutShort,
    /** The bytes are no recording, or are not as they were written. */
    kDamaged,
};

struct Chunk {
    uint64_t offset = 0;  // of its header in the file
    uint32_t kind = 0;
    std::chrono::nanoseconds time{0};
    std::vector<uint8_t> payload;
};

/**
 * Reads a recording's chunks, whatever is in them. No byte is trusted: what a header announces is
 * checked before anything is allocated for it. Used by one thread at a time.
 */
class ChunkReader {
  public:
    /** Reads from the stream's position on, which counts as offset 0; the stream is borrowed. */
    explicit ChunkReader(std::istream& bytes) : mBytes(bytes) {}

    /** Reads the next chunk; false when there is none, and State() tells why. */
    bool Next(Chunk& chunk);

    ReadState State() const { return mState; }
    /** What is wrong, and at which byte; empty when nothing is. */
    const std::string& Error() const { return mError; }
    /** Finds fault with what was read last: nothing more is read. Gives false. */
    bool Fail(ReadState state, uint64_t offset, const std::string& what);

  private:
    bool ReadFileHeader();
    bool ReadHeader(Chunk& chunk, ChunkHeader& header);
    /** Fills `bytes`; gives how many there were. */
    size_t Read(std::span<uint8_t> bytes);
    bool FailToRead(const char* what);
    bool CheckEnd(const Chunk& chunk);

    std::istream& mBytes;
    uint64_t mOffset = 0;
    std::chrono::nanoseconds mTime{0};
    ReadState mState = ReadState::kReading;
    std::string mError;
};

}  // namespace zarvo::host::recording
