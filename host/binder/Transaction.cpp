#include <android/binder_ibinder.h>
#include <android/binder_stability.h>

#include <memory>

#include "host/binder/Binder.h"
#include "host/binder/BinderFaults.h"
#include "host/binder/Class.h"
#include "host/binder/Parcel.h"

using zarvo::host::BinderFaults;

namespace {

constexpr binder_flags_t kClearBuffer = 0x20;
constexpr binder_flags_t kKnownFlags = FLAG_ONEWAY | kClearBuffer | FLAG_PRIVATE_VENDOR;

binder_status_t CheckCall(AIBinder* binder, transaction_code_t code, const AParcel* in,
                          binder_flags_t flags) {
    if (code < FIRST_CALL_TRANSACTION || code > LAST_CALL_TRANSACTION) {
        return STATUS_UNKNOWN_TRANSACTION;
    }
    if ((flags & ~kKnownFlags) != 0) return STATUS_BAD_VALUE;
    if (binder == nullptr || in == nullptr) return STATUS_UNEXPECTED_NULL;
    if (in->Target() != binder) return STATUS_BAD_VALUE;
    return BinderFaults::Instance().transact.ShouldFail() ? STATUS_FAILED_TRANSACTION : STATUS_OK;
}

}  // namespace

binder_status_t AIBinder_prepareTransaction(AIBinder* binder, AParcel** in) {
    if (in == nullptr) return STATUS_UNEXPECTED_NULL;
    *in = nullptr;
    if (binder == nullptr) return STATUS_UNEXPECTED_NULL;
    const AIBinder_Class* const clazz = binder->Class();
    if (clazz == nullptr) return STATUS_INVALID_OPERATION;
    std::unique_ptr<AParcel> parcel(binder->NewParcel());
    const auto status = clazz->hasToken ? parcel->WriteUnits(clazz->token) : STATUS_OK;
    if (status == STATUS_OK) *in = parcel.release();
    return status;
}

binder_status_t AIBinder_transact(AIBinder* binder, transaction_code_t code, AParcel** in,
                                  AParcel** out, binder_flags_t flags) {
    if (in == nullptr) return STATUS_UNEXPECTED_NULL;
    const std::unique_ptr<const AParcel> request(std::exchange(*in, nullptr));
    if (out == nullptr) return STATUS_UNEXPECTED_NULL;
    *out = nullptr;
    binder_status_t status = CheckCall(binder, code, request.get(), flags);
    if (status != STATUS_OK) return status;
    std::unique_ptr<AParcel> reply(binder->NewParcel());
    status = binder->Transact(code, *request, reply.get(), flags);
    if (status == STATUS_OK) *out = reply.release();
    return status;
}

binder_status_t AIBinder_ping(AIBinder* binder) {
    if (binder == nullptr) return STATUS_UNEXPECTED_NULL;
    if (BinderFaults::Instance().ping.ShouldFail()) return STATUS_DEAD_OBJECT;
    const std::unique_ptr<AParcel> request(binder->NewParcel());
    const std::unique_ptr<AParcel> reply(binder->NewParcel());
    return binder->Transact(zarvo::host::kPingTransaction, *request, reply.get(), 0);
}
