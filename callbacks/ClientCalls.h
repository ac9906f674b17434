#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zarvo::aon {

/**
 * The calls to clients that have not returned yet, so that one that hangs can be seen. Noting one
 * takes no lock; any thread. When more are under way than there is room for, some are not seen.
 */
class ClientCalls {
    struct Slot {
        /** Null while the slot is free, kTaken while it is being filled. */
        std::atomic<const char*> what{nullptr};
        std::atomic<int64_t> clientHandle{0};
        std::atomic<std::chrono::steady_clock::rep> since{0};
    };

  public:
    using Time = std::chrono::steady_clock::time_point;

    struct Call {
        int64_t clientHandle = 0;
        /** The operation of the callback. */
        const char* what = "";
        Time since{};
    };

    /** One call, from its begin to its end. */
    class Scope {
      public:
        /** `what` lives for ever. */
        Scope(ClientCalls& calls, int64_t clientHandle, const char* what)
            : mSlot(calls.Take(clientHandle, what)) {}
        ~Scope() {
            if (mSlot != nullptr) mSlot->what.store(nullptr, std::memory_order_release);
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        Slot* const mSlot;
    };

    std::vector<Call> UnderWay() const;

  private:
    static constexpr char kTaken[] = "";
    static constexpr std::size_t kSlots = 8;

    /** Null when there is no room. */
    Slot* Take(int64_t clientHandle, const char* what);

    std::array<Slot, kSlots> mSlots;
};

}  // namespace zarvo::aon
