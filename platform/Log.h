#pragma once

#include <android/log.h>

/**
 * The system's one log tag and its form: "<class name>: <message>".
 *
 * `who` is the name of the logging class, `format` a string literal for printf. Callable from any
 * thread. What a frame holds is only logged when properties::VerboseLog() says so.
 */
#define AON_LOG(priority, who, format, ...) \
    __android_log_print((priority), "AONLog_HAL", "%s: " format, (who)__VA_OPT__(, ) __VA_ARGS__)

#define AON_LOGD(who, ...) AON_LOG(ANDROID_LOG_DEBUG, who, __VA_ARGS__)
#define AON_LOGI(who, ...) AON_LOG(ANDROID_LOG_INFO, who, __VA_ARGS__)
#define AON_LOGW(who, ...) AON_LOG(ANDROID_LOG_WARN, who, __VA_ARGS__)
#define AON_LOGE(who, ...) AON_LOG(ANDROID_LOG_ERROR, who, __VA_ARGS__)
