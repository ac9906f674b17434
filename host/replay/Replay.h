#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/SensorConfigInfo.h>

#include <istream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "host/recording/RecordingReader.h"
#include "host/stream/RecordSource.h"

namespace zarvo::host {

/**
 * The events of a recording as the stream's records, each once, in order, at the intervals at which
 * they were recorded; read as they are played. State notices are the service's own to make, and are
 * passed over; but what comes after a start comes as long after the start as it was recorded.
 *
 * Thread-safe: mMutex is held while the recording is read, by the threads of the stream's runs
 * alone.
 */
class Replay final : public RecordSource {
  public:
    using SensorConfigInfo = recording::SensorConfigInfo;

    /**
     * A replay of the recording that the stream holds, from its first byte on. All of it is read
     * once before: null, and why, if it is damaged or an event in it cannot be a record. One that
     * is cut short is played as far as it goes, and logged. With `again` it never ends.
     */
    static std::shared_ptr<Replay> Make(std::unique_ptr<std::istream> bytes, bool again,
                                        std::string& error);

    /** What the recorded client had subscribed. */
    const SensorConfigInfo& Config() const { return mConfig; }

    std::optional<std::chrono::nanoseconds> NextDelay() override;
    std::optional<uint64_t> Write(aov_event& record) override;
    bool Claim(uint64_t number) override;

  private:
    Replay(std::unique_ptr<std::istream> bytes, bool again);

    /** Reads all of it; false, and why, if it cannot be played. */
    bool Check(std::string& error);
    void Rewind();
    /** Reads up to the next event, if there is not one; false when there is no more. */
    bool FetchLocked();
    bool ReadEvent();
    void NoteEnd();

    std::mutex mMutex;
    const std::unique_ptr<std::istream> mBytes;
    const bool mAgain;
    SensorConfigInfo mConfig;  // not changed once it is made
    std::optional<recording::RecordingReader> mReader;
    /** The next event, and how long it comes after the one before. */
    recording::Entry mEntry;
    std::chrono::nanoseconds mDelay{0};
    bool mFetched = false;
    bool mEnded = false;
    /** When the latest event or start was recorded; nothing before there was one. */
    std::optional<std::chrono::nanoseconds> mBefore;
    /** Of the next event, counted through all rounds. */
    uint64_t mNumber = 0;
    uint64_t mEvents = 0;  // in a round, as far as it could be read when it was checked
};

}  // namespace zarvo::host
