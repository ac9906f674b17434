#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "host/recording/RecordingReader.h"
#include "host/recording/RecordingWriter.h"

namespace zarvo::test {

using host::recording::AONCallBackInfo;
using host::recording::AONSensorStateInfo;
using host::recording::Entry;
using host::recording::RecordingReader;
using host::recording::RecordingWriter;
using host::recording::SensorConfigInfo;
using std::chrono::milliseconds;

/** A recording in memory. */
class Recorded {
  public:
    explicit Recorded(const SensorConfigInfo& config = {}) { writer.Begin(config); }

    std::string bytes;
    RecordingWriter writer{[this](std::span<const uint8_t> some) {
        bytes.append(some.begin(), some.end());
        return true;
    }};
};

/** The events as bytes: equal for what is equal bit for bit, numbers that are none, too. */
inline std::string BytesOf(const std::vector<AONCallBackInfo>& events) {
    Recorded recorded;
    for (const AONCallBackInfo& event : events)
        recorded.writer.Write(milliseconds(0), event);
    return recorded.bytes;
}

inline AONSensorStateInfo State(int32_t state) {
    AONSensorStateInfo info;
    info.state = state;
    return info;
}

}  // namespace zarvo::test
