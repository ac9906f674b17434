#include "host/binder/LocalBinder.h"

#include <unistd.h>

#include "host/binder/Parcel.h"
#include "host/binder/Stability.h"
#include "host/binder/StatusNames.h"

namespace zarvo::host {

LocalBinder::~LocalBinder() {
    mClass->onDestroy(mUserData);
}

bool LocalBinder::AssociateClass(const AIBinder_Class* clazz) {
    return clazz == mClass;
}

AParcel* LocalBinder::NewParcel() {
    return new AParcel(Ref<AIBinder>::Share(this), nullptr);
}

binder_status_t LocalBinder::Transact(transaction_code_t code, const AParcel& in, AParcel* out,
                                      binder_flags_t) {
    in.SetPosition(0);
    binder_status_t status = STATUS_UNKNOWN_TRANSACTION;
    if (code >= FIRST_CALL_TRANSACTION && code <= LAST_CALL_TRANSACTION) {
        status = CallMethod(code, in, out);
    } else if (code == kPingTransaction) {
        status = STATUS_OK;
    } else if (code == kInterfaceTransaction) {
        status = out->WriteUnits(mClass->token);
    } else if (code == kExtensionTransaction) {
        status = out->WriteObject(Extension().Get());
    } else if (code == kDebugPidTransaction) {
        status = out->Write<int32_t>(getpid());
    }
    out->SetPosition(0);
    return PruneStatus(status);
}

binder_status_t LocalBinder::CallMethod(transaction_code_t code, const AParcel& in, AParcel* out) {
    if (mClass->hasToken && !TakeToken(in)) return STATUS_BAD_TYPE;
    return mClass->onTransact(this, code, &in, out);
}

bool LocalBinder::TakeToken(const AParcel& in) const {
    const uint8_t* units = nullptr;
    size_t count = 0;
    if (in.ReadUnits(&units, &count) != STATUS_OK || units == nullptr) return false;
    return count == mClass->token.size() &&
           std::memcmp(units, mClass->token.data(), count * sizeof(char16_t)) == 0;
}

bool LocalBinder::DeclareStability(int32_t level) {
    int32_t present = Stability::kUndeclared;
    return mStability.compare_exchange_strong(present, level) || present == level;
}

int32_t LocalBinder::SettleStability() {
    int32_t level = Stability::kUndeclared;
    return mStability.compare_exchange_strong(level, Stability::kOwn) ? Stability::kOwn : level;
}

void LocalBinder::SetExtension(Ref<AIBinder> extension) {
    const std::lock_guard lock(mMutex);
    // The one replaced goes with the argument, after the lock.
    std::swap(mExtension, extension);
}

Ref<AIBinder> LocalBinder::Extension() const {
    const std::lock_guard lock(mMutex);
    return mExtension;
}

}  // namespace zarvo::host
