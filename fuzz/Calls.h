#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_ibinder.h>
#include <android/binder_parcel.h>

#include <cstdlib>
#include <span>

#include "fuzz/Input.h"

namespace zarvo::fuzz {

/** The code that a byte stands for; the last two are those that every interface has. */
inline transaction_code_t CodeOf(uint8_t byte) {
    constexpr transaction_code_t kGetInterfaceVersion = FIRST_CALL_TRANSACTION + 16777214;
    constexpr transaction_code_t kGetInterfaceHash = FIRST_CALL_TRANSACTION + 16777213;
    if (byte == UINT8_MAX) return kGetInterfaceVersion;
    return byte == UINT8_MAX - 1 ? kGetInterfaceHash : byte;
}

/**
 * Calls a method of a local object with a parcel behind its token that the input composes: so many
 * parts, each some bytes as they are or, for a length above 239, one of `objects` or null.
 */
inline void CallWithParts(AIBinder* target, Input& input, std::span<AIBinder* const> objects) {
    constexpr uint8_t kMostBytes = 239;
    const transaction_code_t code = CodeOf(input.Take<uint8_t>());
    ndk::ScopedAParcel request, reply;
    if (AIBinder_prepareTransaction(target, request.getR()) != STATUS_OK) std::abort();
    for (int parts = input.Take<uint8_t>() % 8; parts > 0; --parts) {
        const uint8_t length = input.Take<uint8_t>();
        if (length > kMostBytes) {
            const size_t object = length - kMostBytes - 1U;
            AParcel_writeStrongBinder(request.get(),
                                      object < objects.size() ? objects[object] : nullptr);
            continue;
        }
        const std::span<const uint8_t> bytes = input.TakeBytes(length);
        const ndk::ScopedAParcel part(AParcel_create());
        AParcel_unmarshal(part.get(), bytes.data(), bytes.size());
        AParcel_appendFrom(part.get(), request.get(), 0, AParcel_getDataSize(part.get()));
    }
    AIBinder_transact(target, code, request.getR(), reply.getR(),
                      (input.Take<uint8_t>() & 1U) != 0 ? FLAG_ONEWAY : 0);
}

}  // namespace zarvo::fuzz
