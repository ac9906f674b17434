#include "host/binder/Stability.h"

#include <android/binder_stability.h>

#include "host/binder/BinderLog.h"
#include "host/binder/LocalBinder.h"
#include "host/binder/ProxyBinder.h"

namespace zarvo::host {

namespace {

LocalBinder* LocalOf(AIBinder* binder) {
    LocalBinder* const local = binder == nullptr ? nullptr : binder->AsLocal();
    if (local == nullptr) BINDER_LOGE("Only a local object can be given a stability");
    return local;
}

void Mark(AIBinder* binder, int32_t level) {
    LocalBinder* const local = LocalOf(binder);
    if (local != nullptr && !local->DeclareStability(level)) {
        BINDER_LOGE("%s has another stability already", local->Class()->descriptor.c_str());
    }
}

void Downgrade(AIBinder* binder, int32_t level) {
    if (LocalBinder* const local = LocalOf(binder); local != nullptr) {
        local->ReplaceStability(level);
    }
}

}  // namespace

int32_t Stability::Settle(AIBinder* binder) {
    if (LocalBinder* const local = binder->AsLocal(); local != nullptr) {
        return local->SettleStability();
    }
    return binder->AsProxy()->Level();
}

}  // namespace zarvo::host

using zarvo::host::Stability;

void AIBinder_markVintfStability(AIBinder* binder) {
    zarvo::host::Mark(binder, Stability::kVintf);
}

void AIBinder_markVendorStability(AIBinder* binder) {
    zarvo::host::Mark(binder, Stability::kVendor);
}

void AIBinder_markSystemStability(AIBinder* binder) {
    zarvo::host::Mark(binder, Stability::kSystem);
}

void AIBinder_forceDowngradeToVendorStability(AIBinder* binder) {
    zarvo::host::Downgrade(binder, Stability::kVendor);
}

void AIBinder_forceDowngradeToSystemStability(AIBinder* binder) {
    zarvo::host::Downgrade(binder, Stability::kSystem);
}
