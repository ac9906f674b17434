#include <chrono>
#include <cstdio>
#include <string>

#include "host/ctl/Command.h"
#include "host/recording/RecordingReader.h"
#include "host/text/EventJson.h"
#include "host/text/EventText.h"

namespace zarvo::host::ctl {
namespace {

using recording::Entry;

std::string JsonOf(const recording::SensorConfigInfo& config) {
    return "{\"sensor\":" + std::to_string(config.sensorId) +
           ",\"frameWidth\":" + std::to_string(config.frameWidth) +
           ",\"frameHeight\":" + std::to_string(config.frameHeight) +
           ",\"fps\":" + std::to_string(config.fps) +
           ",\"serviceType\":" + std::to_string(config.serviceType) +
           ",\"deliveryMode\":" + std::to_string(config.deliveryMode) + '}';
}
std::string JsonOf(const recording::AONCallBackInfo& info) {
    return EventJson(info);
}
std::string JsonOf(const recording::AONSensorStateInfo& info) {
    return StateJson(info);
}
std::string JsonOf(const recording::EndNote& note) {
    return "{\"eventsMissed\":" + std::to_string(note.eventsMissed) + '}';
}

std::string TextOf(const recording::SensorConfigInfo& config) {
    return "sensor " + std::to_string(config.sensorId) + ", " + std::to_string(config.frameWidth) +
           "x" + std::to_string(config.frameHeight) + " at " + std::to_string(config.fps) + ", " +
           ServiceTypesText(config.serviceType) + ", delivery mode " +
           std::to_string(config.deliveryMode);
}
std::string TextOf(const recording::AONCallBackInfo& info) {
    return EventText(info);
}
std::string TextOf(const recording::AONSensorStateInfo& info) {
    return StateText(info);
}
std::string TextOf(const recording::EndNote& note) {
    return "the end; " + std::to_string(note.eventsMissed) + " events were missed";
}

bool Print(const Entry& entry, bool json) {
    const double seconds = std::chrono::duration<double>(entry.time).count();
    const auto line = std::visit(
            [&](const auto& what) { return json ? JsonOf(what) : TextOf(what); }, entry.what);
    // The time becomes the first member of the object.
    const int length = json ? std::printf("{\"time\":%.6f,%s\n", seconds, line.c_str() + 1)
                            : std::printf("%11.6f  %s\n", seconds, line.c_str());
    return length >= 0;
}

}  // namespace

int RunShow(Arguments& arguments) {
    const std::string name(arguments.Words().front());
    std::string error;
    const auto bytes = recording::OpenRecording(name, error);
    if (bytes != nullptr) {
        recording::RecordingReader reader(*bytes);
        Entry entry;
        bool printed = true;
        while (printed && reader.Next(entry))
            printed = Print(entry, arguments.Has("--json"));
        if (!printed || std::fflush(stdout) != 0) {
            std::perror("aonctl: cannot write");
            return kFailed;
        }
        error = reader.Error();
    }
    if (error.empty()) return kDone;
    std::fprintf(stderr, "aonctl: %s: %s\n", name.c_str(), error.c_str());
    return kFailed;
}

}  // namespace zarvo::host::ctl
