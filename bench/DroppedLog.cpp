#include "bench/DroppedLog.h"

#include <android/log.h>

#include <atomic>

namespace zarvo::bench {

namespace {

std::atomic<std::vector<std::string>*> gLines{nullptr};

void OnLine(const __android_logger_data* /*data*/, const char* message) {
    if (auto* const lines = gLines.load(std::memory_order_relaxed)) lines->emplace_back(message);
}

}  // namespace

void DropLog() {
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(&OnLine);
}

void KeepLogIn(std::vector<std::string>* lines) {
    gLines = lines;
}

}  // namespace zarvo::bench
