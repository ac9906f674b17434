#include "callbacks/ClientCalls.h"

namespace zarvo::aon {

std::vector<ClientCalls::Call> ClientCalls::UnderWay() const {
    std::vector<Call> calls;
    for (const Slot& slot : mSlots) {
        const char* const what = slot.what.load(std::memory_order_acquire);
        if (what == nullptr || what == kTaken) continue;
        // The slot may pass to another call meanwhile; then that one's age is told.
        calls.push_back({slot.clientHandle.load(std::memory_order_relaxed), what,
                         Time(Time::duration(slot.since.load(std::memory_order_relaxed)))});
    }
    return calls;
}

ClientCalls::Slot* ClientCalls::Take(int64_t clientHandle, const char* what) {
    for (Slot& slot : mSlots) {
        const char* expected = nullptr;
        if (!slot.what.compare_exchange_strong(expected, kTaken, std::memory_order_acquire))
            continue;
        slot.clientHandle.store(clientHandle, std::memory_order_relaxed);
        slot.since.store(std::chrono::steady_clock::now().time_since_epoch().count(),
                         std::memory_order_relaxed);
        slot.what.store(what, std::memory_order_release);
        return &slot;
    }
    return nullptr;
}

}  // namespace zarvo::aon
