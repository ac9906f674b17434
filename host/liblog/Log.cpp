// The part of liblog that this project calls: lines go to a logger, else to stderr.

#include <android/log.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace {

constexpr int kLongestLine = 1024;

std::atomic<__android_logger_function> gLogger{__android_log_stderr_logger};
std::atomic<int> gMinimumPriority{ANDROID_LOG_INFO};

}  // namespace

void __android_log_stderr_logger(const __android_logger_data* data, const char* message) {
    std::fprintf(stderr, "%d %s: %s\n", data->priority, data->tag == nullptr ? "" : data->tag,
                 message);
}

void __android_log_set_logger(__android_logger_function logger) {
    gLogger = logger;
}

int32_t __android_log_set_minimum_priority(int32_t priority) {
    return gMinimumPriority.exchange(priority);
}

int __android_log_write(int priority, const char* tag, const char* text) {
    if (priority < gMinimumPriority) return 0;
    const __android_logger_data data{sizeof(data), -1, priority, tag, nullptr, 0};
    gLogger.load()(&data, text);
    return 1;
}

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    char line[kLongestLine];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof(line), format, arguments);
    va_end(arguments);
    return __android_log_write(priority, tag, line);
}
