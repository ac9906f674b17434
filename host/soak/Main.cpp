#include <aidl/vendor/zarvo/hardware/camera/aon/AONResult.h>
#include <android/binder_process.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/programs/Arguments.h"
#include "host/recording/RecordingWriter.h"
#include "host/soak/Interrupt.h"
#include "host/soak/Sections.h"
#include "host/soak/Victim.h"
#include "host/soak/Wait.h"

namespace zarvo::host::soak {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using std::chrono::steady_clock;

constexpr int kMisused = 2;
/** KiB, for what the allocator keeps, and how its arenas fall out. */
constexpr int64_t kMayGrow = 512;

constexpr Option kOptions[] = {
        {"--cycles", "NUMBER", ""}, {"--minutes", "NUMBER", ""}, {"--may-grow", "KIB", ""},
        {"--victim", "STATE", ""},  {"--help", "", ""},
};

constexpr char kHelp[] =
        "usage: aon-soak [OPTION]...\n\n"
        "Puts a service, in a process of its own, under load for a long time, and checks that it\n"
        "stays whole: that descriptors, threads and memory come back to what they were when it "
        "was\n"
        "warm, that the sensor is released, that no client misses a state, that the next client "
        "is\n"
        "served. Cycles of start and stop, of a camera that opens and closes, starts against a\n"
        "storm of cameras, clients that are killed wherever they may be, and, with another "
        "service,\n"
        "events as fast as it takes them.\n\n"
        "  --cycles NUMBER   10000 unless given: so many starts, cameras and storm cycles; a "
        "tenth\n"
        "                    of it in kills for each state, a hundred times of it in events\n"
        "  --minutes NUMBER  begin again with new services until so many minutes are over or\n"
        "                    something was found\n"
        "  --may-grow KIB    how much memory may come to what the warm service has; 512 if not\n"
        "                    given\n\n"
        "Exit status: 0 when nothing was found, 1 when something was, or it was interrupted, 2 "
        "for\n"
        "a bad command line.\n";

/** The directory of the services' sockets, gone at the end, and the log of all processes. */
class Scratch {
  public:
    Scratch() {
        std::string path = "/tmp/aon-soak-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) return;
        mPath = path;
        setenv("AON_RUNTIME_DIR", mPath.c_str(), 1);
        const FileDescriptor log(open(Log().c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600));
        if (log.IsOpen()) dup2(log.Get(), STDERR_FILENO);
    }
    ~Scratch() {
        std::error_code error;
        if (!mPath.empty()) std::filesystem::remove_all(mPath, error);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    bool IsThere() const { return !mPath.empty(); }
    std::string Log() const { return mPath + "/log"; }
    std::string Recording() const { return mPath + "/events.aonrec"; }
    /** So that it does not grow for as long as one likes. */
    void ClearLog() const {
        std::error_code error;
        std::filesystem::resize_file(Log(), 0, error);
    }
    /** Prints the end of the log. */
    void PrintLog() const {
        constexpr std::streamoff kBytes = 6000;
        std::ifstream log(Log(), std::ios::ate);
        log.seekg(std::max<std::streamoff>(0, log.tellg() - kBytes));
        std::string line;
        std::getline(log, line);
        std::printf("\nthe end of the log:\n");
        while (std::getline(log, line))
            std::printf("  %s\n", line.c_str());
    }

  private:
    std::string mPath;
};

struct Options {
    uint64_t cycles = 0;
    std::chrono::minutes minutes{0};
    long mayGrow = 0;
};

/** After a section: the service has nothing left, and serves the next client. */
void CheckWhole(ServiceProcess& service, const Options& options, Row& row) {
    // The death of the last client may not have been noticed yet.
    for (const char* const list :
         {"registeredClients", "wishes", "insideClients", "openCameras", "sensorsThatAreNotIdle"}) {
        const std::string empty = '"' + std::string(list) + "\":[]";
        const bool isEmpty = Await([&] { return service.Dump().find(empty) != std::string::npos; });
        if (!isEmpty) row.Find("the dump is never rid of its " + std::string(list));
    }
    LiveOnce(service, row);
    row.after = service.AwaitWithin(row.before);
    if (row.after.descriptors > row.before.descriptors) row.Find("descriptors were left open");
    if (row.after.threads > row.before.threads) row.Find("threads were left");
    if (row.after.memory > row.before.memory + options.mayGrow) row.Find("memory was left");
}

/** Runs a section: a tenth of it warms the service up. */
void RunSection(ServiceProcess& service, const Plan& plan, const Options& options, Row& row) {
    const auto start = steady_clock::now();
    const uint64_t times = std::max<uint64_t>(1, options.cycles * plan.timesPerHundred / 100);
    const uint64_t warmUp = std::max<uint64_t>(1, times / 10);
    plan.section->Run(service, warmUp, row);
    LiveOnce(service, row);
    row.before = service.AwaitSettled();
    if (row.findings.empty()) plan.section->Run(service, times - warmUp, row);
    if (service.Serves()) {
        CheckWhole(service, options, row);
    } else {
        row.Find("the service has ended");
    }
    row.time += steady_clock::now() - start;
    if (isatty(STDOUT_FILENO) != 1) {
        std::printf("%s: done, found %s\n", row.title.c_str(),
                    row.findings.empty() ? "nothing" : row.findings.front().c_str());
    }
}

/** Takes the picture out, which is what most of an event's time goes to. */
void RemovePicture(AONCallBackInfo& event) {
    std::erase_if(event.results, [](const AONResult& result) {
        return result.key >= AONResult::RESULT_KEY_IMAGE_WIDTH &&
               result.key <= AONResult::RESULT_KEY_IMAGE_DATA;
    });
}

/**
 * A recording of so many events, one right after the other: the given ones over and over, with
 * their pictures the first time alone. A replay pauses before it begins again, so it is to be long.
 */
bool WriteRecording(const std::string& path, std::vector<AONCallBackInfo> events, size_t count) {
    std::ofstream file(path, std::ios::binary);
    recording::RecordingWriter writer([&](std::span<const uint8_t> bytes) {
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return file.good();
    });
    bool good = !events.empty() && writer.Begin(Config());
    for (size_t i = 0; i < count && good; ++i) {
        AONCallBackInfo& event = events[i % events.size()];
        good = writer.Write(std::chrono::nanoseconds(0), event);
        RemovePicture(event);
    }
    return good && writer.End(std::chrono::nanoseconds(0), {}) && file.flush();
}

/** All sections on the simulated scene; gives some of its events. */
std::vector<AONCallBackInfo> SoakScene(const std::vector<Plan>& plans, const Options& options,
                                       std::span<Row> rows) {
    constexpr size_t kEvents = 16;
    std::vector<AONCallBackInfo> events;
    ServiceProcess service({});
    if (!service.Serves()) {
        rows.front().Find("the service does not start");
        return events;
    }
    LiveOnce(service, rows.front(), kEvents, &events);
    for (size_t i = 0; i < plans.size() && !Interrupted() && service.Serves(); ++i)
        RunSection(service, plans[i], options, rows[i]);
    const std::string ended = service.End();
    if (!ended.empty()) rows.back().Find(ended);
    return events;
}

void SoakEvents(const Plan& plan, const Options& options, const std::string& recording, Row& row) {
    ServiceProcess service({"--replay", recording, "--replay-loop"});
    if (!service.Serves()) return row.Find("the service does not start");
    RunSection(service, plan, options, row);
    const std::string ended = service.End();
    if (!ended.empty()) row.Find(ended);
}

/** Everything, each kind of load with a service of its own. */
void SoakAll(const Scratch& scratch, const Options& options, std::vector<Row>& rows) {
    constexpr size_t kRecorded = 4096;
    const std::vector<Plan> plans = SceneSections();
    const Plan eventPlan = EventSection();
    for (const Plan& plan : plans)
        rows.emplace_back().title = plan.section->Title();
    rows.emplace_back().title = eventPlan.section->Title();
    const auto end = steady_clock::now() + options.minutes;
    do {
        scratch.ClearLog();
        const auto events = SoakScene(plans, options, std::span(rows).first(plans.size()));
        if (Interrupted()) return;
        if (!WriteRecording(scratch.Recording(), events, kRecorded)) {
            return rows.back().Find("cannot write a recording");
        }
        SoakEvents(eventPlan, options, scratch.Recording(), rows.back());
    } while (!Interrupted() && !HasFindings(rows) && steady_clock::now() < end);
}

int Soak(const Options& options) {
    const Scratch scratch;
    if (!scratch.IsThere()) {
        std::printf("cannot make a directory below /tmp\n");
        return EXIT_FAILURE;
    }
    TakeInterrupts();
    // One arena, and large blocks given back: what the service keeps shows then.
    setenv("MALLOC_ARENA_MAX", "1", 1);
    setenv("MALLOC_MMAP_THRESHOLD_", "1048576", 1);
    ABinderProcess_startThreadPool();
    std::vector<Row> rows;
    SoakAll(scratch, options, rows);
    PrintTable(rows);
    if (Interrupted()) std::printf("\ninterrupted\n");
    if (HasFindings(rows)) scratch.PrintLog();
    return HasFindings(rows) || Interrupted() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace
}  // namespace zarvo::host::soak

int main(int argc, char** argv) {
    using namespace zarvo::host;
    const std::vector<std::string_view> words(argv + std::min(argc, 1), argv + argc);
    Arguments arguments(words, soak::kOptions);
    if (arguments.WantsHelp()) {
        std::printf("%s", soak::kHelp);
        return EXIT_SUCCESS;
    }
    if (arguments.Has("--victim")) return soak::RunVictim(arguments.Value("--victim"));
    soak::Options options;
    options.cycles = static_cast<uint64_t>(arguments.Number("--cycles", 10'000, 10, 1'000'000));
    options.minutes = std::chrono::minutes(arguments.Number("--minutes", 0, 0, 100'000));
    options.mayGrow =
            static_cast<long>(arguments.Number("--may-grow", soak::kMayGrow, 0, 1'000'000'000));
    if (arguments.Error().empty() && !arguments.Words().empty()) arguments.SetError("no words");
    if (!arguments.Error().empty()) {
        std::fprintf(stderr, "aon-soak: %s (try --help)\n", arguments.Error().c_str());
        return soak::kMisused;
    }
    return soak::Soak(options);
}
