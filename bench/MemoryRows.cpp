// What the service's process holds, and whether it grows.

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "bench/EventPair.h"
#include "bench/Fail.h"
#include "bench/Records.h"
#include "bench/Rows.h"

namespace zarvo::bench {

namespace {

constexpr std::chrono::seconds kWarmUp{4};
constexpr std::chrono::seconds kWatched{10};
constexpr size_t kEvents = 1'000'000;
constexpr size_t kEventsBefore = 1000;

/** A number of /proc/PID/status, in KiB. */
double StatusOf(pid_t process, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string word;
    while (status >> word) {
        double value = 0;
        if (word == name + ":" && status >> value) return value;
    }
    Fail("no " + name + " of a process");
}

/** The page faults of all threads, those of ended ones among them. */
double PageFaultsOf(pid_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(stat, text, ')');
    constexpr int kFieldsBetween = 7;
    for (int i = 0; i < kFieldsBetween; ++i)
        stat >> text;
    double faults = 0;
    Require(static_cast<bool>(stat >> faults), "no page faults of a process");
    return faults;
}

void MeasurePeak(Run& run) {
    const RuntimeFolder folder;
    const host::FileDescriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    const Peer service({ProgramFolder() + "/vendor.zarvo.hardware.camera.aon-service"},
                       nowhere.Get());
    ClientProcess client;
    client.Begin();
    std::this_thread::sleep_for(kWarmUp);
    const uint64_t eventsBefore = client.Events();
    const double faultsBefore = PageFaultsOf(service.Pid());
    const double residentBefore = StatusOf(service.Pid(), "VmRSS");
    std::this_thread::sleep_for(kWatched);
    const auto events = static_cast<double>(client.Events() - eventsBefore);
    Require(events > 0, "no events came");
    run.Add("peak", StatusOf(service.Pid(), "VmHWM"), "KiB");
    run.Add("resident, growth", StatusOf(service.Pid(), "VmRSS") - residentBefore, "KiB");
    run.Add("page faults", (PageFaultsOf(service.Pid()) - faultsBefore) / events, "per event");
    run.Add("events", events / std::chrono::duration<double>(kWatched).count(), "per second");
    client.End();
}

double HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void MeasureGrowth(Run& run) {
    Records records(k640x480, Records::Source::kWarm);
    EventPair pair;
    for (size_t i = 0; i < kEventsBefore; ++i)
        pair.Deliver(records.Next());
    const pid_t client = pair.Other().Pid();
    const double heap = HeapBytes();
    const double resident = StatusOf(getpid(), "VmRSS");
    const double clientResident = StatusOf(client, "VmRSS");
    for (size_t i = 0; i < kEvents; ++i)
        pair.Deliver(records.Next());
    run.Add("heap", HeapBytes() - heap, "bytes");
    run.Add("resident", StatusOf(getpid(), "VmRSS") - resident, "KiB");
    run.Add("client's resident", StatusOf(client, "VmRSS") - clientResident, "KiB");
}

}  // namespace

void AddMemoryRows(RowList& rows) {
    rows.push_back({"memory/640x480, 30 per second", MeasurePeak, true});
    rows.push_back({"memory/growth over a million events", MeasureGrowth, true});
}

}  // namespace zarvo::bench
