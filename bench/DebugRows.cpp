#include "bench/DebugRows.h"

#include <android/log.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "bench/DroppedLog.h"
#include "bench/Fail.h"
#include "bench/Peer.h"
#include "bench/Records.h"
#include "bench/Sinks.h"
#include "events/DebugDump.h"
#include "platform/Properties.h"

namespace zarvo::bench {

namespace {

using aon::AONManagerCallback;

/** A region of the output that is dumped, and where to. */
struct DumpedRegion {
    size_t offset;
    size_t bytes;
    std::string path;
};

Contestant Converting(Records& records) {
    return {"ours", Repeated([&records, translator = NewConversion()] {
                translator->onCallback(&records.Next());
            })};
}

/** The two contestants without and with what is for debugging. */
void AddSwitch(Run& run, Curve curve, const RaceResult& off, const RaceResult& on) {
    curve.unit = "switch";
    curve.points = {{0, off.nanoseconds[0], off.nanoseconds[1]},
                    {1, on.nanoseconds[0], on.nanoseconds[1]}};
    run.Add(std::move(curve));
}

void SetVerbose(bool on) {
    Require(property_set(aon::properties::kVerboseLog, on ? "1" : "0") == 0,
            "cannot set a property");
}

void Nothing(size_t /*times*/) {}

void MeasureVerbose(Run& run) {
    Records records(kNoImage, Records::Source::kWarm);
    const Contestant ours = Converting(records);
    const RaceResult off = RunRace({ours, {"nothing", Nothing}}, run.GetPace());
    SetVerbose(true);
    const std::vector<std::string> lines = LinesOf([&] { ours.run(1); });
    const Contestant floor{"floor", Repeated([&lines] {
                               for (const std::string& line : lines)
                                   __android_log_print(ANDROID_LOG_DEBUG, "AONLog_HAL", "%s",
                                                       line.c_str());
                           })};
    const RaceResult on = RunRace({ours, floor}, run.GetPace());
    SetVerbose(false);
    AddSwitch(run,
              {.title = "Conversion, verbose log off and on", .floorName = "the lines, ready-made"},
              off, on);
}

std::string PathIn(const std::filesystem::path& folder, const char* path) {
    return folder / std::filesystem::path(path).filename();
}

/** The regions that the event's dump consists of. */
std::vector<DumpedRegion> RegionsOf(const aov_event& event, const std::filesystem::path& folder) {
    std::vector<DumpedRegion> regions;
    aon::dumpOutput(&event, [&](const uint8_t*, int32_t offset, uint64_t size, const char* path) {
        regions.push_back({static_cast<size_t>(offset), size, PathIn(folder, path)});
    });
    return regions;
}

void WriteRegion(const aov_event& event, const DumpedRegion& region) {
    const host::FileDescriptor file(
            open(region.path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    const ssize_t written = write(file.Get(), event.output + region.offset, region.bytes);
    Require(written == static_cast<ssize_t>(region.bytes), "cannot write a dump");
}

void MeasureDumps(Run& run) {
    // The library's own folder is a device's; the files go below this program's, by its own writer.
    const std::filesystem::path folder = std::filesystem::path(ProgramFolder()) / "bench-dumps";
    std::filesystem::create_directories(folder);
    Records records(kNoImage, Records::Source::kWarm);
    const Contestant converting = Converting(records);
    const auto redirected = [&folder](const uint8_t* base, int32_t offset, uint64_t size,
                                      const char* path) {
        aon::writeByteToFile(base, offset, size, PathIn(folder, path).c_str());
    };
    const Contestant dumping{"ours", Repeated([&] {
                                 converting.run(1);
                                 aon::dumpOutput(&records.Next(), redirected);
                             })};
    const std::vector<DumpedRegion> regions = RegionsOf(records.Next(), folder);
    const Contestant floor{"floor", Repeated([&] {
                               for (const DumpedRegion& region : regions)
                                   WriteRegion(records.Next(), region);
                           })};
    const RaceResult off = RunRace({converting, {"nothing", Nothing}}, run.GetPace());
    const RaceResult on = RunRace({dumping, floor}, run.GetPace());
    std::filesystem::remove_all(folder);
    AddSwitch(run, {.title = "Conversion, dumps off and on", .floorName = "open, write, close"},
              off, on);
}

}  // namespace

void AddDebugRows(RowList& rows) {
    rows.push_back({"growth/verbose log", MeasureVerbose});
    rows.push_back({"growth/dumps", MeasureDumps});
}

}  // namespace zarvo::bench
