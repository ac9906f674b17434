#include "host/recording/RecordingWriter.h"

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>

#include <algorithm>

#include "host/recording/Chunk.h"

namespace zarvo::host::recording {

bool RecordingWriter::Begin(const SensorConfigInfo& config) {
    return Put(MakeFileHeader()) && WriteParcel(kConfigChunk, Time(0), config);
}

bool RecordingWriter::Write(Time time, const AONCallBackInfo& event) {
    return WriteParcel(kEventChunk, time, event);
}

bool RecordingWriter::Write(Time time, const AONSensorStateInfo& state) {
    return WriteParcel(kStateChunk, time, state);
}

bool RecordingWriter::End(Time time, const EndNote& note) {
    mChunk.resize(kChunkHeaderSize + sizeof(note.eventsMissed));
    PutNumber(std::span(mChunk).subspan(kChunkHeaderSize), note.eventsMissed);
    return WriteChunk(kEndChunk, time);
}

template <typename T>
bool RecordingWriter::WriteParcel(uint32_t kind, Time time, const T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    if (value.writeToParcel(parcel.get()) != STATUS_OK) return false;
    const auto size = static_cast<size_t>(AParcel_getDataSize(parcel.get()));
    if (size > kMostPayload) return false;
    mChunk.resize(kChunkHeaderSize + size);
    uint8_t* const payload = mChunk.data() + kChunkHeaderSize;
    return AParcel_marshal(parcel.get(), payload, 0, size) == STATUS_OK && WriteChunk(kind, time);
}

bool RecordingWriter::WriteChunk(uint32_t kind, Time time) {
    mTime = std::max(mTime, time);
    const auto header = MakeChunkHeader(kind, mTime, std::span(mChunk).subspan(kChunkHeaderSize));
    std::copy(header.begin(), header.end(), mChunk.begin());
    return Put(mChunk);
}

bool RecordingWriter::Put(std::span<const uint8_t> bytes) {
    if (!mOutput(bytes)) return false;
    mSize += bytes.size();
    return true;
}

}  // namespace zarvo::host::recording
