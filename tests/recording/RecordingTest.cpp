#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>

#include "host/recording/Chunk.h"
#include "tests/recording/Recorded.h"

namespace zarvo::test {
namespace {

using namespace host::recording;

AONCallBackInfo Event(int32_t frame) {
    AONCallBackInfo info;
    info.serviceType = 8;
    info.results = {{400, std::vector<uint8_t>(8, 0xA5)}, {0, frame}};
    return info;
}

/** A configuration, two events with a notice between them, and an end. */
std::string Small() {
    SensorConfigInfo config;
    config.sensorId = 7;
    Recorded recorded(config);
    recorded.writer.Write(milliseconds(10), Event(1));
    recorded.writer.Write(milliseconds(20), State(2));
    recorded.writer.Write(milliseconds(15), Event(2));
    recorded.writer.End(milliseconds(40), {.eventsMissed = 3});
    return recorded.bytes;
}

struct ReadBack {
    std::vector<Entry> entries;
    ReadState state = ReadState::kReading;
    std::string error;
};

ReadBack Read(const std::string& bytes) {
    std::istringstream stream(bytes);
    RecordingReader reader(stream);
    ReadBack result;
    for (Entry entry; reader.Next(entry);)
        result.entries.push_back(entry);
    result.state = reader.State();
    result.error = reader.Error();
    return result;
}

/** A chunk with good checksums, whatever it says. */
std::string Chunk(uint32_t kind, milliseconds time, const std::vector<uint8_t>& payload,
                  std::optional<uint32_t> length = {}) {
    ChunkHeaderBytes header = MakeChunkHeader(kind, time, payload);
    if (length) PutNumber(std::span(header).first(4), *length);
    PutNumber(std::span(header).last(4), Crc32(std::span(header).first(kChunkHeaderSize - 4)));
    return std::string(header.begin(), header.end()) + std::string(payload.begin(), payload.end());
}

TEST(Recording, GivesBackWhatWasWritten) {
    const ReadBack back = Read(Small());
    EXPECT_EQ(back.state, ReadState::kWhole) << back.error;
    ASSERT_EQ(back.entries.size(), 5U);
    EXPECT_EQ(std::get<SensorConfigInfo>(back.entries[0].what).sensorId, 7);
    EXPECT_EQ(std::get<AONCallBackInfo>(back.entries[1].what), Event(1));
    EXPECT_EQ(std::get<AONSensorStateInfo>(back.entries[2].what).state, 2);
    EXPECT_EQ(std::get<AONCallBackInfo>(back.entries[3].what), Event(2));
    EXPECT_EQ(std::get<EndNote>(back.entries[4].what).eventsMissed, 3U);
    // Two threads may tell their news in another order than they took the time.
    EXPECT_EQ(back.entries[3].time, milliseconds(20));
}

TEST(Recording, HasTheBytesThatItsDescriptionSays) {
    Recorded recorded;
    EXPECT_EQ(recorded.bytes.substr(0, 16), std::string("\x93"
                                                        "AONR\r\n\x1A\x01\0\0\0O\x8A\x10K",
                                                        16));
    constexpr std::array<uint8_t, 9> kCheck{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    EXPECT_EQ(Crc32(kCheck), 0xCBF43926U);
}

TEST(Recording, CutAnywhereGivesItsWholeChunksAndSaysWhereItEnds) {
    const std::string whole = Small();
    const std::vector<Entry> entries = Read(whole).entries;
    for (size_t length = 0; length < whole.size(); ++length) {
        const ReadBack back = Read(whole.substr(0, length));
        const auto ended = static_cast<size_t>(
                std::count_if(entries.begin() + 1, entries.end(),
                              [&](const Entry& entry) { return entry.offset <= length; }));
        EXPECT_EQ(back.entries.size(), ended) << length;
        const bool begun = length >= kFileHeaderSize;
        EXPECT_EQ(back.state, begun ? ReadState::kCutShort : ReadState::kDamaged) << length;
        const std::string where = "at byte " + std::to_string(begun ? length : 0) + ": ";
        EXPECT_TRUE(back.error.starts_with(where)) << back.error;
    }
}

TEST(Recording, WithAnyBitTurnedIsNoticed) {
    const std::string whole = Small();
    for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string bytes = whole;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        EXPECT_EQ(Read(bytes).state, ReadState::kDamaged) << bit;
    }
}

TEST(Recording, MadeUpIsRefusedWithAReason) {
    const FileHeader newer = MakeFileHeader(2);
    const std::string begun = Recorded().bytes;
    const std::string at = "at byte " + std::to_string(begun.size()) + ": ";
    const std::string state(Small().substr(begun.size()));
    const struct {
        std::string bytes, error;
    } cases[] = {
            {"", "at byte 0: this is no recording"},
            {std::string(1000, '\0'), "at byte 0: this is no recording"},
            {std::string(newer.begin(), newer.end()), "at byte 0: the recording is of version 2"},
            {begun + Chunk(kEventChunk, {}, {}, UINT32_MAX), at + "the chunk announces 4294967295"},
            {begun + Chunk(99, {}, {}, kMostPayload + 1), at + "the chunk announces 4194305"},
            {begun + Chunk(kEventChunk, {}, {}), at + "the event is none"},
            {begun + Chunk(kEventChunk, {}, std::vector<uint8_t>(4096, 0xFF)), at + "the event"},
            {begun + Chunk(kStateChunk, {}, std::vector<uint8_t>(16)), at + "the state notice"},
            {begun + Chunk(kConfigChunk, {}, {}), at + "a second configuration"},
            {begun + Chunk(kEndChunk, {}, {}), at + "the end note is none"},
            {begun.substr(0, 16) + state, "at byte 16: the configuration is missing"},
            {begun + Chunk(99, milliseconds(-1), {}), at + "the chunk's time is impossible"},
            {begun + Chunk(99, std::chrono::hours(24 * 4000), {}), at + "the chunk's time"},
            {Small() + "x", "something follows the end note"},
    };
    for (const auto& made : cases) {
        const ReadBack back = Read(made.bytes);
        EXPECT_EQ(back.state, ReadState::kDamaged) << made.error;
        EXPECT_NE(back.error.find(made.error), std::string::npos) << back.error;
    }
}

TEST(Recording, PassesOverChunksOfOtherKinds) {
    const std::string whole = Small();
    const std::string other = Chunk(99, {}, std::vector<uint8_t>(100, 1));
    const ReadBack back =
            Read(whole.substr(0, kFileHeaderSize) + other + whole.substr(kFileHeaderSize));
    EXPECT_EQ(back.state, ReadState::kWhole) << back.error;
    EXPECT_EQ(back.entries.size(), 5U);
}

}  // namespace
}  // namespace zarvo::test
