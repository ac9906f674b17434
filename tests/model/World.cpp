#include "tests/model/World.h"

namespace zarvo::test {

const char* NameOf(User user) {
    constexpr const char* kNames[] = {"alice", "bob", "carol", "mallory"};
    return kNames[static_cast<size_t>(user)];
}

std::string Granted(int64_t handle) {
    return "ok, handle " + std::to_string(handle);
}

std::string StateText(int64_t handle, int32_t sensorId, int32_t state) {
    constexpr const char* kStates[] = {"idle", "started", "busy"};
    const std::string text = state >= 0 && state <= 2 ? kStates[state] : std::to_string(state);
    return "sensor " + std::to_string(sensorId) + " is " + text + " (handle " +
           std::to_string(handle) + ")";
}

std::string FrameText(int64_t handle) {
    return "a frame (handle " + std::to_string(handle) + ")";
}

std::string StartText(int32_t sensorId, int32_t width, int32_t height, int32_t fps, int32_t mdFps,
                      int32_t types) {
    return "start sensor " + std::to_string(sensorId) + " " + std::to_string(width) + "x" +
           std::to_string(height) + " fps " + std::to_string(fps) + " md " + std::to_string(mdFps) +
           " types " + std::to_string(types);
}

std::string NoticeText(const std::vector<int32_t>& sensors, bool opened) {
    std::string text = opened ? "notify open" : "notify close";
    for (size_t i = 0; i < sensors.size(); ++i)
        text += (i == 0 ? " " : ",") + std::to_string(sensors[i]);
    return text;
}

std::string RunningText(int32_t types, bool streamRuns) {
    return "types " + std::to_string(types) + (streamRuns ? ", stream on" : ", stream off");
}

}  // namespace zarvo::test
