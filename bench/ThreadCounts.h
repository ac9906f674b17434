#pragma once

#include <cstdint>

namespace zarvo::bench {

/** What this thread has asked of the allocator and of the kernel so far. */
struct ThreadCounts {
    /** Calls of malloc, calloc and realloc, those of operator new among them. */
    uint64_t allocations = 0;
    /** Bytes that these asked for. */
    uint64_t bytes = 0;
    /** Page faults that needed no reading from a disk. */
    uint64_t pageFaults = 0;
    /** How often the thread waited for something, and was woken. */
    uint64_t waits = 0;
};

/** Counts of the calling thread; allocations stay 0 in a program without CountedMalloc.cpp. */
ThreadCounts CountsOfThread();

/** Of all threads of this process. */
uint64_t PageFaultsOfProcess();

/** Notes one allocation of the calling thread. */
void NoteAllocation(uint64_t bytes);

}  // namespace zarvo::bench
