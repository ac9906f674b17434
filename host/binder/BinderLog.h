#pragma once

#include <android/log.h>

/** Misuse that a caller cannot be told otherwise goes to the log. */
#define BINDER_LOGE(...) __android_log_print(ANDROID_LOG_ERROR, "libbinder_ndk", __VA_ARGS__)
