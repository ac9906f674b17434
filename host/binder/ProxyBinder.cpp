#include "host/binder/ProxyBinder.h"

#include <android/binder_stability.h>

#include <algorithm>

#include "host/binder/Class.h"
#include "host/binder/Parcel.h"
#include "host/binder/Stability.h"
#include "host/binder/StatusNames.h"

namespace zarvo::host {

ProxyBinder::~ProxyBinder() {
    while (const auto link = TakeFirstLink())
        link->Drop();
    mSession->ProxyEnded(this);
}

bool ProxyBinder::AssociateClass(const AIBinder_Class* clazz) {
    const AIBinder_Class* current = mClass.load();
    if (current != nullptr) return current == clazz;
    if (!HasDescriptor(clazz->token)) return false;
    return mClass.compare_exchange_strong(current, clazz) || current == clazz;
}

bool ProxyBinder::HasDescriptor(const std::u16string& descriptor) {
    {
        const std::lock_guard lock(mMutex);
        if (mDescriptor) return *mDescriptor == descriptor;
    }
    // Not under the lock: over a socket, this thread may serve other calls while it waits.
    auto answer = AskDescriptor();
    if (!answer) return false;
    const std::lock_guard lock(mMutex);
    mDescriptor = std::move(answer);
    return *mDescriptor == descriptor;
}

std::optional<std::u16string> ProxyBinder::AskDescriptor() {
    const std::unique_ptr<AParcel> in(NewParcel());
    const std::unique_ptr<AParcel> out(NewParcel());
    if (Transact(kInterfaceTransaction, *in, out.get(), 0) != STATUS_OK) return std::nullopt;
    const uint8_t* units = nullptr;
    size_t count = 0;
    if (out->ReadUnits(&units, &count) != STATUS_OK || units == nullptr) return std::nullopt;
    std::u16string descriptor(count, u'\0');
    std::memcpy(descriptor.data(), units, count * sizeof(char16_t));
    return descriptor;
}

AParcel* ProxyBinder::NewParcel() {
    return new AParcel(Ref<AIBinder>::Share(this), mSession);
}

binder_status_t ProxyBinder::Transact(transaction_code_t code, const AParcel& in, AParcel* out,
                                      binder_flags_t flags) {
    if (code >= FIRST_CALL_TRANSACTION && code <= LAST_CALL_TRANSACTION) {
        const bool vendor = (flags & FLAG_PRIVATE_VENDOR) != 0;
        const int32_t caller = vendor ? Stability::kVendor : Stability::kOwn;
        if (!Stability::Allows(mStability, caller)) return STATUS_BAD_TYPE;
    }
    flags &= ~binder_flags_t{FLAG_PRIVATE_VENDOR};
    const binder_status_t status = mSession->Transact(mAddress, code, in, out, flags);
    out->SetPosition(0);
    return PruneStatus(status);
}

binder_status_t ProxyBinder::Link(std::shared_ptr<DeathLink> link) {
    if (!IsAlive()) return STATUS_DEAD_OBJECT;
    if (const auto status = mSession->WatchForDeath(); status != STATUS_OK) return status;
    const std::lock_guard lock(mMutex);
    // Whoever sees the connection alive here is listed before NotifyDeath looks.
    if (!IsAlive()) return STATUS_DEAD_OBJECT;
    mLinks.push_back(std::move(link));
    return STATUS_OK;
}

binder_status_t ProxyBinder::Unlink(const AIBinder_DeathRecipient* recipient, const void* cookie) {
    std::shared_ptr<DeathLink> link;
    {
        const std::lock_guard lock(mMutex);
        const auto found = std::find_if(mLinks.begin(), mLinks.end(), [&](const auto& candidate) {
            return candidate->Is(recipient, cookie);
        });
        if (found == mLinks.end()) return STATUS_NAME_NOT_FOUND;
        if (!IsAlive()) return STATUS_DEAD_OBJECT;
        link = *found;
        mLinks.erase(found);
    }
    return link->Drop() ? STATUS_OK : STATUS_NAME_NOT_FOUND;
}

void ProxyBinder::Forget(const DeathLink* link) {
    const std::lock_guard lock(mMutex);
    const auto found = std::find_if(mLinks.begin(), mLinks.end(),
                                    [&](const auto& listed) { return listed.get() == link; });
    if (found != mLinks.end()) mLinks.erase(found);
}

void ProxyBinder::NotifyDeath() {
    while (const auto link = TakeFirstLink())
        link->Fire();
}

std::shared_ptr<DeathLink> ProxyBinder::TakeFirstLink() {
    const std::lock_guard lock(mMutex);
    if (mLinks.empty()) return nullptr;
    auto link = std::move(mLinks.front());
    mLinks.pop_front();
    return link;
}

}  // namespace zarvo::host
