// The stream's records, the events made of them, and recordings.

#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorInfo.h>
#include <aidl/zarvo/aon/host/CameraDevice.h>
#include <aidl/zarvo/aon/host/FaultPoint.h>
#include <aidl/zarvo/aon/host/RecordFaults.h>

#include "events/OutputLayout.h"
#include "fuzz/Samples.h"
#include "fuzz/Seeds.h"
#include "host/recording/RecordingWriter.h"

namespace zarvo::fuzz {
namespace {

using namespace aidl::vendor::zarvo::hardware::camera::aon;
using host::recording::RecordingWriter;

void AddRecord(const SeedFolder& seeds, const aov_event& event) {
    std::string words;
    for (const uint32_t word :
         {event.frame_id, event.frame_width, event.frame_height, event.serviceType,
          event.outputSize, event.imageInfo.height, event.imageInfo.stride,
          event.debugImageInfo.height, event.debugImageInfo.stride}) {
        words += Raw(word);
    }
    constexpr size_t kMost = 3000;
    for (const auto& block : {aon::layout::kFusion, aon::layout::kGazeResult,
                              aon::layout::kFaceAngleResult, aon::layout::kFaceFeatureResult}) {
        const char* const begin = reinterpret_cast<const char*>(event.output) + block.offset;
        const std::string bytes(begin, std::min<size_t>(block.size, kMost));
        const std::string name = "block-at-" + std::to_string(block.offset);
        // With no property set, and with all.
        seeds.Add("events", name, '\0' + words + bytes);
        seeds.Add("events", name + "-looked-at", '\7' + words + bytes);
    }
}

void AddParcels(const SeedFolder& seeds, const AONCallBackInfo& event) {
    const auto add = [&](const char* name, char which, const std::string& bytes) {
        seeds.Add("parcel", name, which + bytes);
    };
    add("event", 0, ParcelOf(event));
    for (const AONResult& result : event.results) {
        add(("result-" + std::to_string(result.key)).c_str(), 1, ParcelOf(result));
        add(("value-" + std::to_string(result.key)).c_str(), 2, ParcelOf(result.value));
    }
    AONResultValue text;
    text.set<AONResultValue::Tag::stringValue>("text");
    add("value-text", 2, ParcelOf(text));
    AONSensorInfo sensor;
    sensor.frameInfos.resize(2);
    sensor.frameInfos[0].supportRates = {5, 10};
    add("sensor", 3, ParcelOf(sensor));
    add("state", 4, ParcelOf(AONSensorStateInfo()));
    add("frame", 5, ParcelOf(sensor.frameInfos[0]));
    add("config", 6, ParcelOf(Config(15)));
    aidl::zarvo::aon::host::CameraDevice device;
    device.sensorIds = {1, 2};
    add("device", 7, ParcelOf(device));
    add("fault", 8, ParcelOf(aidl::zarvo::aon::host::FaultPoint()));
    add("lies", 9, ParcelOf(aidl::zarvo::aon::host::RecordFaults()));
}

std::string Entry(char kind, const std::string& payload) {
    constexpr char kMilliseconds = 20;
    return std::string{kind, kMilliseconds} + Piece(payload);
}

void AddRecordings(const SeedFolder& seeds, const AONCallBackInfo& event) {
    std::string file(1, 0);
    RecordingWriter writer([&](std::span<const uint8_t> some) {
        file.append(some.begin(), some.end());
        return true;
    });
    writer.Begin(Config(event.serviceType));
    writer.Write(std::chrono::milliseconds(5), AONSensorStateInfo());
    writer.Write(std::chrono::milliseconds(200), event);
    writer.End(std::chrono::milliseconds(300), {1});
    const std::string number = std::to_string(event.serviceType);
    seeds.Add("recording", "file-" + number, file);
    seeds.Add("recording", "entries-" + number,
              std::string(1, 1) + Entry(1, ParcelOf(Config(event.serviceType))) +
                      Entry(3, ParcelOf(AONSensorStateInfo())) + Entry(2, ParcelOf(event)) +
                      Entry(4, Raw(uint64_t{0})));
    seeds.Add("recording", "lie-" + number,
              std::string(1, 1) + Entry('\x81', ParcelOf(Config(event.serviceType))) +
                      Raw(uint32_t{1} << 20U));
}

}  // namespace

void AddRecords(const SeedFolder& seeds) {
    Translation translation;
    const auto record = Rendered(15);
    AddRecord(seeds, *record);
    AddParcels(seeds, translation.EventOf(*record));
    for (const int32_t services : {1, 6, 8})
        AddRecordings(seeds, translation.EventOf(*Rendered(services)));
}

}  // namespace zarvo::fuzz
