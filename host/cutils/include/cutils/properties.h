#pragma once

#include <stdint.h>

/*
 * System properties: short named strings that steer programs from outside. Every function may be
 * called from any thread; a read neither allocates nor waits for more than another thread's write.
 * Properties are set in the process, and before that by the variable AON_PROPERTIES of the
 * process's environment, see host/cutils/PropertyStore.h.
 */

/* Historic bound; names may be longer. */
#define PROPERTY_KEY_MAX 32
/* Bytes of the longest value with its terminating zero. */
#define PROPERTY_VALUE_MAX 92

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies the property's value with a terminating zero to `value`, which has room for
 * PROPERTY_VALUE_MAX bytes, and returns its length. An unset or empty property gives
 * `default_value`, cut to the room, or the empty string when that is null.
 */
int property_get(const char* key, char* value, const char* default_value);

/*
 * Sets the property; a null value is the empty one. Returns 0, or -1 for a name that is no
 * property name or a value that is too long; nothing is changed then.
 */
int property_set(const char* key, const char* value);

/*
 * 1 for exactly 1, y, yes, on, true; 0 for exactly 0, n, no, off, false; the default for anything
 * else.
 */
int8_t property_get_bool(const char* key, int8_t default_value);

/*
 * The number that the value begins with: white space, a sign, then decimal, 0x or octal digits;
 * what follows is ignored. The default when there is no digit, or when it is out of range.
 */
int32_t property_get_int32(const char* key, int32_t default_value);

#ifdef __cplusplus
}
#endif
