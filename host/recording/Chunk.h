#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/**
 * The bytes of a recording: a file header, then chunks one after the other, each a header and its
 * payload. All numbers are little-endian. Pure functions; docs/recordings.md has it as a table.
 */
namespace zarvo::host::recording {

enum ChunkKind : uint32_t {
    /** What the client subscribed: a SensorConfigInfo. The first chunk, and only there. */
    kConfigChunk = 1,
    /** An event: an AONCallBackInfo. */
    kEventChunk = 2,
    /** A state notice: an AONSensorStateInfo. */
    kStateChunk = 3,
    /** How many events the recorder missed, as 64 bits: nothing follows it. */
    kEndChunk = 4,
};

inline constexpr uint32_t kVersion = 1;
/** Of a payload, in bytes: no binder message is larger. */
inline constexpr uint32_t kMostPayload = 4U << 20U;
/** Of a chunk's time. It keeps sums of times in 64 bits, whatever a file says. */
inline constexpr std::chrono::nanoseconds kLongest = std::chrono::hours(10 * 365 * 24);

inline constexpr size_t kFileHeaderSize = 16;
inline constexpr size_t kChunkHeaderSize = 24;
using FileHeader = std::array<uint8_t, kFileHeaderSize>;
using ChunkHeaderBytes = std::array<uint8_t, kChunkHeaderSize>;

/** The 32-bit CRC of zip and PNG. */
uint32_t Crc32(std::span<const uint8_t> bytes);

/** A number as little-endian bytes; these two are for 32 and 64 bits. */
void PutNumber(std::span<uint8_t> bytes, uint64_t number);
uint64_t GetNumber(std::span<const uint8_t> bytes);

/** What a recording of a version begins with. */
FileHeader MakeFileHeader(uint32_t version = kVersion);
/** The version; nothing if this does not begin a recording. */
std::optional<uint32_t> ParseFileHeader(const FileHeader& bytes);

struct ChunkHeader {
    uint32_t length = 0;  // of the payload, in bytes
    uint32_t kind = 0;
    std::chrono::nanoseconds time{0};  // since the recording's beginning
    uint32_t payloadChecksum = 0;
};

ChunkHeaderBytes MakeChunkHeader(uint32_t kind, std::chrono::nanoseconds time,
                                 std::span<const uint8_t> payload);
/** Nothing if the header's own checksum is wrong. Its numbers are as they were written. */
std::optional<ChunkHeader> ParseChunkHeader(const ChunkHeaderBytes& bytes);

}  // namespace zarvo::host::recording
