#pragma once

#include <android/binder_ibinder.h>

#include <cstdint>

namespace zarvo::host {

/** The levels of stability: bits of who may rely on an object, as parcels carry them. */
struct Stability {
    static constexpr int32_t kUndeclared = 0;
    static constexpr int32_t kVendor = 0b000011;
    static constexpr int32_t kSystem = 0b001100;
    static constexpr int32_t kVintf = 0b111111;
    /** What an object that declared nothing has, and a caller that says nothing asks for. */
    static constexpr int32_t kOwn = kSystem;

    /** Whether an object in a parcel may have this level. */
    static bool IsLevel(int32_t level) {
        return level == kVendor || level == kSystem || level == kVintf;
    }
    /** Whether a caller of level `caller` may call an object of level `object`. */
    static bool Allows(int32_t object, int32_t caller) { return (object & caller) == caller; }

    /** The level of an object that is about to be sent; undeclared ends here. */
    static int32_t Settle(AIBinder* binder);
};

}  // namespace zarvo::host
