#pragma once

#include <stdint.h>

/*
 * Trace sections. This library records none: every call is empty and free.
 */

#define ATRACE_TAG_NEVER 0
#define ATRACE_TAG_ALWAYS (UINT64_C(1) << 0)
#define ATRACE_TAG_CAMERA (UINT64_C(1) << 10)
#define ATRACE_TAG_HAL (UINT64_C(1) << 11)

/* A source file defines its tag before it includes this header. */
#ifndef ATRACE_TAG
#define ATRACE_TAG ATRACE_TAG_NEVER
#endif

#ifdef __cplusplus
extern "C" {
#endif

static inline uint64_t atrace_is_tag_enabled(uint64_t tag) {
    (void)tag;
    return 0;
}

static inline void atrace_begin(uint64_t tag, const char* name) {
    (void)tag;
    (void)name;
}

static inline void atrace_end(uint64_t tag) {
    (void)tag;
}

static inline void atrace_async_begin(uint64_t tag, const char* name, int32_t cookie) {
    (void)tag;
    (void)name;
    (void)cookie;
}

static inline void atrace_async_end(uint64_t tag, const char* name, int32_t cookie) {
    (void)tag;
    (void)name;
    (void)cookie;
}

static inline void atrace_int(uint64_t tag, const char* name, int32_t value) {
    (void)tag;
    (void)name;
    (void)value;
}

static inline void atrace_int64(uint64_t tag, const char* name, int64_t value) {
    (void)tag;
    (void)name;
    (void)value;
}

#ifdef __cplusplus
}
#endif

#define ATRACE_ENABLED() atrace_is_tag_enabled(ATRACE_TAG)
#define ATRACE_BEGIN(name) atrace_begin(ATRACE_TAG, name)
#define ATRACE_END() atrace_end(ATRACE_TAG)
#define ATRACE_ASYNC_BEGIN(name, cookie) atrace_async_begin(ATRACE_TAG, name, cookie)
#define ATRACE_ASYNC_END(name, cookie) atrace_async_end(ATRACE_TAG, name, cookie)
#define ATRACE_INT(name, value) atrace_int(ATRACE_TAG, name, value)
#define ATRACE_INT64(name, value) atrace_int64(ATRACE_TAG, name, value)
