#include "host/recording/RecordingReader.h"

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace zarvo::host::recording {
namespace {

/** Whether the bytes are exactly a parcelable of this type. */
template <typename T>
bool FromBytes(const std::vector<uint8_t>& bytes, T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    return AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size()) == STATUS_OK &&
           value.readFromParcel(parcel.get()) == STATUS_OK &&
           static_cast<size_t>(AParcel_getDataPosition(parcel.get())) == bytes.size();
}

}  // namespace

bool RecordingReader::Next(Entry& entry) {
    do {
        if (!mChunks.Next(mChunk)) return false;
    } while (!Take(entry));
    return mChunks.State() == ReadState::kReading || mChunks.State() == ReadState::kWhole;
}

bool RecordingReader::Take(Entry& entry) {
    if (mChunk.kind < kConfigChunk || mChunk.kind > kEndChunk) return false;
    entry.offset = mChunk.offset;
    entry.time = mChunk.time;
    if ((mChunk.kind == kConfigChunk) == mHasConfig) {
        mChunks.Fail(ReadState::kDamaged, mChunk.offset,
                     mHasConfig ? "a second configuration" : "the configuration is missing");
    } else if (mChunk.kind == kConfigChunk) {
        TakeParcel<SensorConfigInfo>(entry, "configuration");
        mHasConfig = true;
    } else if (mChunk.kind == kEventChunk) {
        TakeParcel<AONCallBackInfo>(entry, "event");
    } else if (mChunk.kind == kStateChunk) {
        TakeParcel<AONSensorStateInfo>(entry, "state notice");
    } else {
        entry.what = EndNote{GetNumber(mChunk.payload)};
    }
    return true;
}

template <typename T>
void RecordingReader::TakeParcel(Entry& entry, const char* name) {
    if (FromBytes(mChunk.payload, entry.what.emplace<T>())) return;
    mChunks.Fail(ReadState::kDamaged, mChunk.offset, std::string("the ") + name + " is none");
}

std::unique_ptr<std::istream> OpenRecording(const std::string& path, std::string& error) {
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        // A pipe would be waited for, and neither it nor a device can be read twice.
        error = "it is no regular file";
        return nullptr;
    }
    errno = exists ? 0 : errno;
    auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (file->is_open()) return file;
    error = std::strerror(errno);
    return nullptr;
}

}  // namespace zarvo::host::recording
