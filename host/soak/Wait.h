#pragma once

#include <poll.h>

#include <chrono>

#include "host/soak/Client.h"

namespace zarvo::host::soak {

/** For what another process does and tells nobody: looks every other millisecond until it holds;
 * false if it does not in time. */
template <typename Condition>
bool Await(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        poll(nullptr, 0, 2);
    }
    return true;
}

}  // namespace zarvo::host::soak
