#include "host/soak/Interrupt.h"

#include <atomic>
#include <csignal>

namespace zarvo::host::soak {
namespace {

std::atomic<bool> gInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "it is set by a signal's handler");

}  // namespace

void TakeInterrupts() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, [](int) { gInterrupted = true; });
}

bool Interrupted() {
    return gInterrupted;
}

}  // namespace zarvo::host::soak
