#include "host/recording/Chunk.h"

#include <algorithm>

namespace zarvo::host::recording {
namespace {

/** A byte that is no text and both ways to end a line show a file that was taken for text. */
constexpr std::array<uint8_t, 8> kMagic{0x93, 'A', 'O', 'N', 'R', '\r', '\n', 0x1A};

constexpr size_t kVersionAt = 8;
constexpr size_t kFileChecksumAt = 12;

constexpr size_t kLengthAt = 0;
constexpr size_t kKindAt = 4;
constexpr size_t kTimeAt = 8;
constexpr size_t kPayloadChecksumAt = 16;
constexpr size_t kHeaderChecksumAt = 20;
static_assert(kFileChecksumAt + sizeof(uint32_t) == kFileHeaderSize);
static_assert(kHeaderChecksumAt + sizeof(uint32_t) == kChunkHeaderSize);

constexpr std::array<uint32_t, 256> MakeCrcTable() {
    constexpr uint32_t kPolynomial = 0xEDB88320;
    std::array<uint32_t, 256> table{};
    for (uint32_t byte = 0; byte < table.size(); ++byte) {
        uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1U) ^ ((value & 1U) != 0 ? kPolynomial : 0U);
        table[byte] = value;
    }
    return table;
}
constexpr std::array<uint32_t, 256> kCrcTable = MakeCrcTable();

template <size_t kSize>
void Put32(std::array<uint8_t, kSize>& bytes, size_t offset, uint32_t number) {
    PutNumber(std::span(bytes).subspan(offset, sizeof(number)), number);
}

template <size_t kSize>
uint32_t Get32(const std::array<uint8_t, kSize>& bytes, size_t offset) {
    return static_cast<uint32_t>(GetNumber(std::span(bytes).subspan(offset, sizeof(uint32_t))));
}

}  // namespace

uint32_t Crc32(std::span<const uint8_t> bytes) {
    uint32_t crc = ~0U;
    for (const uint8_t byte : bytes)
        crc = (crc >> 8U) ^ kCrcTable[(crc ^ byte) & 0xFFU];
    return ~crc;
}

void PutNumber(std::span<uint8_t> bytes, uint64_t number) {
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(number);
        number >>= 8U;
    }
}

uint64_t GetNumber(std::span<const uint8_t> bytes) {
    uint64_t number = 0;
    for (size_t i = bytes.size(); i-- > 0;)
        number = number << 8U | bytes[i];
    return number;
}

FileHeader MakeFileHeader(uint32_t version) {
    FileHeader bytes{};
    std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
    Put32(bytes, kVersionAt, version);
    Put32(bytes, kFileChecksumAt, Crc32(std::span(bytes).first(kFileChecksumAt)));
    return bytes;
}

std::optional<uint32_t> ParseFileHeader(const FileHeader& bytes) {
    if (!std::equal(kMagic.begin(), kMagic.end(), bytes.begin())) return std::nullopt;
    const uint32_t checksum = Crc32(std::span(bytes).first(kFileChecksumAt));
    if (Get32(bytes, kFileChecksumAt) != checksum) return std::nullopt;
    return Get32(bytes, kVersionAt);
}

ChunkHeaderBytes MakeChunkHeader(uint32_t kind, std::chrono::nanoseconds time,
                                 std::span<const uint8_t> payload) {
    ChunkHeaderBytes bytes{};
    Put32(bytes, kLengthAt, static_cast<uint32_t>(payload.size()));
    Put32(bytes, kKindAt, kind);
    PutNumber(std::span(bytes).subspan(kTimeAt, sizeof(uint64_t)),
              static_cast<uint64_t>(time.count()));
    Put32(bytes, kPayloadChecksumAt, Crc32(payload));
    Put32(bytes, kHeaderChecksumAt, Crc32(std::span(bytes).first(kHeaderChecksumAt)));
    return bytes;
}

std::optional<ChunkHeader> ParseChunkHeader(const ChunkHeaderBytes& bytes) {
    const uint32_t checksum = Crc32(std::span(bytes).first(kHeaderChecksumAt));
    if (Get32(bytes, kHeaderChecksumAt) != checksum) return std::nullopt;
    ChunkHeader header;
    header.length = Get32(bytes, kLengthAt);
    header.kind = Get32(bytes, kKindAt);
    const uint64_t time = GetNumber(std::span(bytes).subspan(kTimeAt, sizeof(uint64_t)));
    header.time = std::chrono::nanoseconds(static_cast<int64_t>(time));
    header.payloadChecksum = Get32(bytes, kPayloadChecksumAt);
    return header;
}

}  // namespace zarvo::host::recording
