#pragma once

#include <android/binder_ibinder.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <set>

#include "host/binder/Binder.h"

namespace zarvo::host {

class DeathLink;

/** The links of one recipient that are not gone yet. Shared by recipient and links; thread-safe. */
class DeathLinkSet {
  public:
    void Add(std::shared_ptr<DeathLink> link);
    void Remove(const std::shared_ptr<DeathLink>& link);
    std::set<std::shared_ptr<DeathLink>> TakeAll();

  private:
    std::mutex mMutex;
    std::set<std::shared_ptr<DeathLink>> mLinks;  // mMutex
};

/**
 * One linking of a recipient with a cookie to a proxy. Listed by both; whichever of death, unlink,
 * the recipient's end and the proxy's end comes first takes it and makes its calls, with no lock
 * held. Thread-safe.
 */
class DeathLink : public std::enable_shared_from_this<DeathLink> {
  public:
    DeathLink(const AIBinder_DeathRecipient* recipient, void* cookie, const WeakRef& proxy);
    DeathLink(const DeathLink&) = delete;
    DeathLink& operator=(const DeathLink&) = delete;

    bool Is(const AIBinder_DeathRecipient* recipient, const void* cookie) const {
        return mRecipient == recipient && mCookie == cookie;
    }
    /** Gives the notice, then tells that the link is gone; unless it was taken before. */
    void Fire() { End(mOnDied); }
    /** Tells that the link is gone; false if it was taken before. */
    bool Drop() { return End(nullptr); }
    /** Drop, for a link its proxy still lists. */
    void DropAndForget();

  private:
    bool End(void (*notice)(void*));

    const AIBinder_DeathRecipient* const mRecipient;  // for comparing alone
    void* const mCookie;
    void (*const mOnDied)(void*);
    void (*const mOnUnlinked)(void*);
    const WeakRef mProxy;
    const std::shared_ptr<DeathLinkSet> mSiblings;
    std::atomic<bool> mTaken{false};
};

}  // namespace zarvo::host

/** See binder_ibinder.h. Owned by the caller; its links need it only while it lives. */
struct AIBinder_DeathRecipient {
    void (*onDied)(void* cookie);
    void (*onUnlinked)(void* cookie) = nullptr;
    const std::shared_ptr<zarvo::host::DeathLinkSet> links =
            std::make_shared<zarvo::host::DeathLinkSet>();
};
