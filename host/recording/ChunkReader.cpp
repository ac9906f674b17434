#include "host/recording/ChunkReader.h"

namespace zarvo::host::recording {

bool ChunkReader::Next(Chunk& chunk) {
    if (mState != ReadState::kReading) return false;
    if (mOffset == 0 && !ReadFileHeader()) return false;
    ChunkHeader header;
    if (!ReadHeader(chunk, header)) return false;
    chunk.payload.resize(header.length);
    if (Read(chunk.payload) != header.length) return FailToRead("in the middle of a chunk");
    if (Crc32(chunk.payload) != header.payloadChecksum) {
        return Fail(ReadState::kDamaged, chunk.offset, "the chunk's bytes are not as written");
    }
    mTime = chunk.time;
    return chunk.kind != kEndChunk || CheckEnd(chunk);
}

bool ChunkReader::Fail(ReadState state, uint64_t offset, const std::string& what) {
    mState = state;
    mError = "at byte " + std::to_string(offset) + ": " + what;
    return false;
}

bool ChunkReader::ReadFileHeader() {
    FileHeader bytes{};
    const size_t length = Read(bytes);
    if (mBytes.bad()) return FailToRead("");
    const auto version = ParseFileHeader(bytes);
    if (length != bytes.size() || !version) {
        return Fail(ReadState::kDamaged, 0, "this is no recording");
    }
    if (*version == kVersion) return true;
    return Fail(ReadState::kDamaged, 0,
                "the recording is of version " + std::to_string(*version) + ", only " +
                        std::to_string(kVersion) + " can be read");
}

bool ChunkReader::ReadHeader(Chunk& chunk, ChunkHeader& header) {
    chunk.offset = mOffset;
    ChunkHeaderBytes bytes{};
    const size_t length = Read(bytes);
    if (length == 0) return FailToRead("without an end note");
    if (length != bytes.size()) return FailToRead("in the middle of a chunk's header");
    const auto parsed = ParseChunkHeader(bytes);
    if (!parsed) return Fail(ReadState::kDamaged, chunk.offset, "this is no chunk");
    if (parsed->length > kMostPayload) {
        return Fail(ReadState::kDamaged, chunk.offset,
                    "the chunk announces " + std::to_string(parsed->length) + " bytes, at most " +
                            std::to_string(kMostPayload) + " are possible");
    }
    if (parsed->time < mTime || parsed->time > kLongest) {
        return Fail(ReadState::kDamaged, chunk.offset, "the chunk's time is impossible");
    }
    header = *parsed;
    chunk.kind = header.kind;
    chunk.time = header.time;
    return true;
}

size_t ChunkReader::Read(std::span<uint8_t> bytes) {
    mBytes.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const auto length = static_cast<size_t>(mBytes.gcount());
    mOffset += length;
    return length;
}

bool ChunkReader::FailToRead(const char* what) {
    if (mBytes.bad()) return Fail(ReadState::kDamaged, mOffset, "it cannot be read");
    return Fail(ReadState::kCutShort, mOffset, std::string("the recording ends ") + what);
}

bool ChunkReader::CheckEnd(const Chunk& chunk) {
    if (chunk.payload.size() != sizeof(uint64_t)) {
        return Fail(ReadState::kDamaged, chunk.offset, "the end note is none");
    }
    if (mBytes.peek() != std::istream::traits_type::eof()) {
        return Fail(ReadState::kDamaged, mOffset, "something follows the end note");
    }
    mState = ReadState::kWhole;
    return true;
}

}  // namespace zarvo::host::recording
