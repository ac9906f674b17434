#pragma once

#include <stdint.h>

/*
 * Trace sections. A call costs the reading of atrace_enabled_tags while its tag is off, which every
 * tag always is here: this library has nowhere to write a trace to.
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

/** The tags that somebody traces. */
extern uint64_t atrace_enabled_tags;
/** Write a section's begin and end; for the functions below. */
void atrace_begin_body(const char* name);
void atrace_end_body(void);

static inline uint64_t atrace_is_tag_enabled(uint64_t tag) {
    return atrace_enabled_tags & tag;
}

static inline void atrace_begin(uint64_t tag, const char* name) {
    if (atrace_is_tag_enabled(tag)) atrace_begin_body(name);
}

static inline void atrace_end(uint64_t tag) {
    if (atrace_is_tag_enabled(tag)) atrace_end_body();
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
