#include "bench/AllocationCount.h"

#include <sys/resource.h>

namespace zarvo::bench {

namespace {

// Constant-initialised: the first allocation of a thread must not need another one.
thread_local constinit MemoryCounts tlsCounts;

}  // namespace

MemoryCounts CountsOfThread() {
    MemoryCounts counts = tlsCounts;
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    counts.pageFaults = static_cast<uint64_t>(usage.ru_minflt);
    return counts;
}

void NoteAllocation(uint64_t bytes) {
    ++tlsCounts.allocations;
    tlsCounts.bytes += bytes;
}

}  // namespace zarvo::bench
