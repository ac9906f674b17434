// Recordings: any file, and any entries in a well-formed file, are shown, and replayed if that can
// be. A record that is written for an event makes the service send the very same event.

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "fuzz/Input.h"
#include "fuzz/Samples.h"
#include "host/ctl/Images.h"
#include "host/recording/Chunk.h"
#include "host/recording/RecordingReader.h"
#include "host/replay/EventRecord.h"
#include "host/replay/Replay.h"
#include "host/text/EventJson.h"
#include "host/text/EventText.h"
#include "tests/recording/Recorded.h"

namespace {

using namespace zarvo::host;
using namespace zarvo::host::recording;
using zarvo::test::BytesOf;

void Look(const AONCallBackInfo& event) {
    (void)EventText(event);
    if (EventJson(event).find('\n') != std::string::npos) std::abort();
    const ctl::EventImage found = ctl::FindImage(event);
    std::string error;
    if (found.error.empty() && ctl::EncodePng(found.image, error).empty()) std::abort();
    static zarvo::fuzz::Translation service;
    static const auto record = std::make_unique<aov_event>();
    if (!WriteEventRecord(event, *record).empty()) return;
    if (BytesOf({service.EventOf(*record)}) != BytesOf({event})) std::abort();
}
void Look(const AONSensorStateInfo& state) {
    (void)StateText(state);
    (void)StateJson(state);
}
void Look(const SensorConfigInfo& config) {
    (void)ServiceTypesText(config.serviceType);
}
void Look(const EndNote& /*note*/) {}

void Show(const std::string& bytes) {
    std::istringstream stream(bytes);
    RecordingReader reader(stream);
    Entry entry;
    while (reader.Next(entry))
        std::visit([](const auto& what) { Look(what); }, entry.what);
    if (reader.State() == ReadState::kReading) std::abort();
    if (reader.Error().empty() != (reader.State() == ReadState::kWhole)) std::abort();
}

void Play(const std::string& bytes) {
    constexpr int kMostEvents = 8;
    std::string error;
    const auto replay = Replay::Make(std::make_unique<std::istringstream>(bytes), true, error);
    if ((replay == nullptr) == error.empty()) std::abort();
    static const auto record = std::make_unique<aov_event>();
    for (int i = 0; replay != nullptr && i < kMostEvents; ++i) {
        const auto delay = replay->NextDelay();
        if (!delay) return;
        if (*delay < std::chrono::nanoseconds(0)) std::abort();
        const auto number = replay->Write(*record);
        if (!number || !replay->Claim(*number)) std::abort();
    }
}

/** Lets a chunk's header announce another length; its checksum is right all the same. */
void Announce(uint32_t length, ChunkHeaderBytes& header) {
    constexpr size_t kChecksumAt = kChunkHeaderSize - sizeof(uint32_t);
    const std::span bytes(header);
    PutNumber(bytes.first(sizeof(length)), length);
    PutNumber(bytes.subspan(kChecksumAt), Crc32(bytes.first(kChecksumAt)));
}

/** A file of entries, each a kind, how long after the one before, and its bytes. */
std::string Composed(zarvo::fuzz::Input& input) {
    constexpr uint8_t kLies = 0x80;
    const FileHeader begin = MakeFileHeader();
    std::string bytes(begin.begin(), begin.end());
    std::chrono::nanoseconds time{0};
    while (!input.IsEmpty()) {
        const uint8_t kind = input.Take<uint8_t>();
        time += std::chrono::milliseconds(input.Take<uint8_t>());
        const auto payload = input.TakePiece();
        ChunkHeaderBytes header = MakeChunkHeader(kind & ~kLies, time, payload);
        if ((kind & kLies) != 0) Announce(input.Take<uint32_t>(), header);
        bytes.append(header.begin(), header.end()).append(payload.begin(), payload.end());
    }
    return bytes;
}

}  // namespace

/** The input is a byte that says whether what follows is the file or its entries. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zarvo::fuzz::Input input(data, size);
    const bool isComposed = input.Take<uint8_t>() % 2 != 0;
    const std::string bytes =
            isComposed ? Composed(input) : std::string(zarvo::fuzz::Text(input.TakeRest()));
    Show(bytes);
    Play(bytes);
    return 0;
}
