#include "host/binder/DeathRecipient.h"

#include "host/binder/BinderFaults.h"
#include "host/binder/ProxyBinder.h"

namespace zarvo::host {

void DeathLinkSet::Add(std::shared_ptr<DeathLink> link) {
    const std::lock_guard lock(mMutex);
    mLinks.insert(std::move(link));
}

void DeathLinkSet::Remove(const std::shared_ptr<DeathLink>& link) {
    const std::lock_guard lock(mMutex);
    mLinks.erase(link);
}

std::set<std::shared_ptr<DeathLink>> DeathLinkSet::TakeAll() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mLinks, {});
}

DeathLink::DeathLink(const AIBinder_DeathRecipient* recipient, void* cookie, const WeakRef& proxy)
    : mRecipient(recipient),
      mCookie(cookie),
      mOnDied(recipient->onDied),
      mOnUnlinked(recipient->onUnlinked),
      mProxy(proxy),
      mSiblings(recipient->links) {}

bool DeathLink::End(void (*notice)(void*)) {
    if (mTaken.exchange(true)) return false;
    mSiblings->Remove(shared_from_this());
    if (notice != nullptr) notice(mCookie);
    if (mOnUnlinked != nullptr) mOnUnlinked(mCookie);
    return true;
}

void DeathLink::DropAndForget() {
    if (const auto proxy = mProxy.Promote()) proxy->AsProxy()->Forget(this);
    Drop();
}

namespace {

binder_status_t Link(AIBinder* binder, AIBinder_DeathRecipient* recipient, void* cookie) {
    ProxyBinder* const proxy = binder->AsProxy();
    if (proxy == nullptr) return STATUS_INVALID_OPERATION;
    if (BinderFaults::Instance().linkToDeath.ShouldFail()) return STATUS_FAILED_TRANSACTION;
    const auto link = std::make_shared<DeathLink>(recipient, cookie, WeakRef(proxy->Refs()));
    recipient->links->Add(link);
    const binder_status_t status = proxy->Link(link);
    if (status != STATUS_OK) recipient->links->Remove(link);
    return status;
}

}  // namespace

}  // namespace zarvo::host

AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(void (*onBinderDied)(void* cookie)) {
    return onBinderDied == nullptr ? nullptr : new AIBinder_DeathRecipient{onBinderDied};
}

void AIBinder_DeathRecipient_setOnUnlinked(AIBinder_DeathRecipient* recipient,
                                           void (*onUnlinked)(void* cookie)) {
    if (recipient != nullptr) recipient->onUnlinked = onUnlinked;
}

void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient) {
    if (recipient == nullptr) return;
    for (const auto& link : recipient->links->TakeAll())
        link->DropAndForget();
    delete recipient;
}

binder_status_t AIBinder_linkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                     void* cookie) {
    if (binder == nullptr || recipient == nullptr) return STATUS_UNEXPECTED_NULL;
    const binder_status_t status = zarvo::host::Link(binder, recipient, cookie);
    if (status != STATUS_OK && recipient->onUnlinked != nullptr) recipient->onUnlinked(cookie);
    return status;
}

binder_status_t AIBinder_unlinkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                       void* cookie) {
    if (binder == nullptr || recipient == nullptr) return STATUS_UNEXPECTED_NULL;
    zarvo::host::ProxyBinder* const proxy = binder->AsProxy();
    if (proxy == nullptr) return STATUS_NAME_NOT_FOUND;
    if (zarvo::host::BinderFaults::Instance().unlinkToDeath.ShouldFail()) {
        return STATUS_FAILED_TRANSACTION;
    }
    return proxy->Unlink(recipient, cookie);
}
