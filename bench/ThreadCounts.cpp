#include "bench/ThreadCounts.h"

#include <sys/resource.h>

namespace zarvo::bench {

namespace {

// Constant-initialised: the first allocation of a thread must not need another one.
thread_local constinit ThreadCounts tlsCounts;

template <typename Whose>
rusage UsageOf(Whose whose) {
    rusage usage{};
    getrusage(whose, &usage);
    return usage;
}

}  // namespace

ThreadCounts CountsOfThread() {
    ThreadCounts counts = tlsCounts;
    const rusage usage = UsageOf(RUSAGE_THREAD);
    counts.pageFaults = static_cast<uint64_t>(usage.ru_minflt);
    counts.waits = static_cast<uint64_t>(usage.ru_nvcsw);
    return counts;
}

uint64_t PageFaultsOfProcess() {
    return static_cast<uint64_t>(UsageOf(RUSAGE_SELF).ru_minflt);
}

void NoteAllocation(uint64_t bytes) {
    ++tlsCounts.allocations;
    tlsCounts.bytes += bytes;
}

}  // namespace zarvo::bench
