// What an event costs in allocations and page faults, counted in the steady state.

#include <string>
#include <thread>

#include "bench/AllocationCount.h"
#include "bench/EventPair.h"
#include "bench/Records.h"
#include "bench/Rows.h"
#include "bench/Sinks.h"

namespace zarvo::bench {

namespace {

constexpr size_t kEventsBefore = 200;
constexpr size_t kEvents = 1000;

using Deliver = std::function<void(aov_event& event)>;

struct PerEvent {
    double allocations = 0;
    double bytes = 0;
    double pageFaults = 0;
};

PerEvent CountOnThisThread(const Deliver& deliver, Records& records) {
    for (size_t i = 0; i < kEventsBefore; ++i)
        deliver(records.Next());
    const MemoryCounts before = CountsOfThread();
    for (size_t i = 0; i < kEvents; ++i)
        deliver(records.Next());
    const MemoryCounts after = CountsOfThread();
    const auto each = [](uint64_t from, uint64_t to) {
        return static_cast<double>(to - from) / kEvents;
    };
    return {each(before.allocations, after.allocations), each(before.bytes, after.bytes),
            each(before.pageFaults, after.pageFaults)};
}

void Add(Run& run, const std::string& thread, const PerEvent& counts) {
    run.Add(thread + "/allocations", counts.allocations, "per event");
    run.Add(thread + "/bytes asked for", counts.bytes, "per event");
    run.Add(thread + "/page faults", counts.pageFaults, "per event");
}

void CountOnBothThreads(Run& run, const Deliver& deliver) {
    Records records(k640x480, Records::Source::kWarm);
    Add(run, "main thread", CountOnThisThread(deliver, records));
    PerEvent counts;
    std::thread callbackThread([&] { counts = CountOnThisThread(deliver, records); });
    callbackThread.join();
    Add(run, "callback thread", counts);
}

void CountConversion(Run& run) {
    CountOnBothThreads(run, [translator = NewConversion()](aov_event& event) {
        translator->onCallback(&event);
    });
}

void CountWholeEvent(Run& run) {
    EventPair pair;
    CountOnBothThreads(run, [&pair](aov_event& event) { pair.Deliver(event); });
}

}  // namespace

void AddCountRows(RowList& rows) {
    rows.push_back({"counts/conversion", CountConversion});
    rows.push_back({"counts/whole event", CountWholeEvent});
}

}  // namespace zarvo::bench
