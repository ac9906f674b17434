#include "host/replay/Replay.h"

#include <algorithm>
#include <utility>

#include "host/replay/EventRecord.h"
#include "platform/Log.h"

namespace zarvo::host {
namespace {

using recording::AONCallBackInfo;
using recording::AONSensorStateInfo;
using recording::ReadState;
using std::chrono::nanoseconds;

constexpr char kWho[] = "Replay";

/** Before a recording begins again: whatever its times are, it leaves others room to work. */
constexpr nanoseconds kLeastPause = std::chrono::milliseconds(10);

bool IsStart(const recording::Entry& entry) {
    const auto* const state = std::get_if<AONSensorStateInfo>(&entry.what);
    return state != nullptr && state->state == AONSensorStateInfo::SENSOR_STATE_STARTED;
}

std::string NameOf(const recording::Entry& entry, uint64_t number) {
    return "event " + std::to_string(number) + ", at byte " + std::to_string(entry.offset);
}

}  // namespace

std::shared_ptr<Replay> Replay::Make(std::unique_ptr<std::istream> bytes, bool again,
                                     std::string& error) {
    std::shared_ptr<Replay> replay(new Replay(std::move(bytes), again));
    if (!replay->Check(error)) return nullptr;
    return replay;
}

Replay::Replay(std::unique_ptr<std::istream> bytes, bool again)
    : mBytes(std::move(bytes)), mAgain(again) {
    Rewind();
}

bool Replay::Check(std::string& error) {
    const auto record = std::make_unique<aov_event>();
    recording::Entry entry;
    while (mReader->Next(entry)) {
        if (const auto* config = std::get_if<SensorConfigInfo>(&entry.what)) mConfig = *config;
        const auto* const event = std::get_if<AONCallBackInfo>(&entry.what);
        if (event == nullptr) continue;
        ++mEvents;
        error = WriteEventRecord(*event, *record);
        if (error.empty()) continue;
        error = NameOf(entry, mEvents) + ": " + error;
        return false;
    }
    error = mReader->Error();
    if (mReader->State() == ReadState::kDamaged) return false;
    if (mReader->State() == ReadState::kCutShort) {
        AON_LOGW(kWho, "%s; what there is will be played", error.c_str());
    }
    error.clear();
    AON_LOGI(kWho, "%llu events to play", static_cast<unsigned long long>(mEvents));
    Rewind();
    return true;
}

void Replay::Rewind() {
    mBytes->clear();
    mBytes->seekg(0);
    mReader.emplace(*mBytes);
    mBefore.reset();
}

std::optional<nanoseconds> Replay::NextDelay() {
    const std::lock_guard lock(mMutex);
    return FetchLocked() ? std::optional(mDelay) : std::nullopt;
}

std::optional<uint64_t> Replay::Write(aov_event& record) {
    const std::lock_guard lock(mMutex);
    if (!FetchLocked()) return std::nullopt;
    const std::string fault = WriteEventRecord(std::get<AONCallBackInfo>(mEntry.what), record);
    if (fault.empty()) return mNumber;
    // It was checked: somebody has changed the file.
    AON_LOGE(kWho, "%s: %s", NameOf(mEntry, mNumber + 1).c_str(), fault.c_str());
    mEnded = true;
    return std::nullopt;
}

bool Replay::Claim(uint64_t number) {
    const std::lock_guard lock(mMutex);
    if (number != mNumber) return false;
    ++mNumber;
    mFetched = false;
    return true;
}

bool Replay::FetchLocked() {
    if (mEnded) return false;
    if (mFetched) return true;
    mFetched = ReadEvent();
    if (!mFetched && mAgain && mEvents > 0 && mReader->State() != ReadState::kDamaged) {
        Rewind();
        mFetched = ReadEvent();
        mDelay = std::max(mDelay, kLeastPause);
    }
    if (!mFetched) NoteEnd();
    return mFetched;
}

bool Replay::ReadEvent() {
    while (mReader->Next(mEntry)) {
        const bool isEvent = std::holds_alternative<AONCallBackInfo>(mEntry.what);
        mDelay = mBefore ? mEntry.time - *mBefore : nanoseconds(0);
        if (isEvent || IsStart(mEntry)) mBefore = mEntry.time;
        if (isEvent) return true;
    }
    return false;
}

void Replay::NoteEnd() {
    mEnded = true;
    const ReadState state = mReader->State();
    if (state == ReadState::kDamaged) AON_LOGE(kWho, "%s", mReader->Error().c_str());
    AON_LOGI(kWho, "the recording is over, no more frames: %llu events played",
             static_cast<unsigned long long>(mNumber));
}

}  // namespace zarvo::host
