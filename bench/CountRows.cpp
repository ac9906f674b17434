// What an event costs in allocations, page faults and waits, counted in the steady state.

#include <string>
#include <thread>

#include "bench/EventPair.h"
#include "bench/RawPair.h"
#include "bench/Records.h"
#include "bench/Rows.h"
#include "bench/Sinks.h"
#include "bench/ThreadCounts.h"

namespace zarvo::bench {

namespace {

constexpr size_t kEventsBefore = 200;
constexpr size_t kEvents = 1000;
/** The kernel may take a page away at any time; one that an event needs anew is missed each time.
 */
constexpr int kMostCounts = 3;

using Deliver = std::function<void(aov_event& event)>;

struct PerEvent {
    double allocations = 0;
    double bytes = 0;
    double pageFaults = 0;
    double waits = 0;
};

double Each(uint64_t before, uint64_t after) {
    return static_cast<double>(after - before) / kEvents;
}

PerEvent CountOnce(const Deliver& deliver, Records& records) {
    const ThreadCounts before = CountsOfThread();
    for (size_t i = 0; i < kEvents; ++i)
        deliver(records.Next());
    const ThreadCounts after = CountsOfThread();
    return {Each(before.allocations, after.allocations), Each(before.bytes, after.bytes),
            Each(before.pageFaults, after.pageFaults), Each(before.waits, after.waits)};
}

PerEvent CountOnThisThread(const Deliver& deliver, Records& records) {
    for (size_t i = 0; i < kEventsBefore; ++i)
        deliver(records.Next());
    PerEvent least = CountOnce(deliver, records);
    for (int i = 1; i < kMostCounts && least.pageFaults > 0; ++i) {
        const PerEvent other = CountOnce(deliver, records);
        if (other.pageFaults < least.pageFaults) least = other;
    }
    return least;
}

void Add(Run& run, const std::string& thread, const PerEvent& counts) {
    run.Add(thread + "/allocations", counts.allocations, "per event");
    run.Add(thread + "/bytes asked for", counts.bytes, "per event");
    run.Add(thread + "/page faults", counts.pageFaults, "per event");
}

/** Gives what was counted on the main thread. */
PerEvent CountOnBothThreads(Run& run, const Deliver& deliver, Records& records) {
    const PerEvent onMain = CountOnThisThread(deliver, records);
    Add(run, "main thread", onMain);
    PerEvent onOther;
    std::thread callbackThread([&] { onOther = CountOnThisThread(deliver, records); });
    callbackThread.join();
    Add(run, "callback thread", onOther);
    return onMain;
}

void CountConversion(Run& run) {
    Records records(k640x480, Records::Source::kCold);
    const auto translator = NewConversion();
    CountOnBothThreads(
            run, [&translator](aov_event& event) { translator->onCallback(&event); }, records);
}

void CountWholeEvent(Run& run) {
    Records records(k640x480, Records::Source::kCold);
    const size_t otherBytes = OtherBytesOf(records.Next());
    EventPair pair;
    RawPair raw(RawPair::Landing::kBuffer);
    const Deliver deliver = [&pair](aov_event& event) { pair.Deliver(event); };
    const PerEvent ours = CountOnBothThreads(run, deliver, records);
    const uint64_t faultsBefore = pair.Other().PageFaults();
    for (size_t i = 0; i < kEvents; ++i)
        deliver(records.Next());
    run.Add("client/page faults", Each(faultsBefore, pair.Other().PageFaults()), "per event");
    const Deliver send = [&](const aov_event& event) {
        raw.Deliver(otherBytes, ImageOf(event, k640x480.ImageBytes()));
    };
    const PerEvent floor = CountOnThisThread(send, records);
    run.Compare("waits", "F0: raw socket", ours.waits, floor.waits, ours.waits / floor.waits,
                "per event");
}

}  // namespace

void AddCountRows(RowList& rows) {
    rows.push_back({"counts/conversion", CountConversion});
    rows.push_back({"counts/whole event", CountWholeEvent});
}

}  // namespace zarvo::bench
