// The allocator of the C library, counted: these take the place of its functions in the whole
// program. Not for sanitizers, which have an allocator of their own.

#include <cstddef>

#include "bench/ThreadCounts.h"

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) {
    zarvo::bench::NoteAllocation(size);
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    zarvo::bench::NoteAllocation(count * size);
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    zarvo::bench::NoteAllocation(size);
    return __libc_realloc(block, size);
}

}  // extern "C"
