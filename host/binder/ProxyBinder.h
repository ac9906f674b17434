#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "host/binder/Binder.h"
#include "host/binder/DeathRecipient.h"
#include "host/binder/Session.h"

namespace zarvo::host {

/**
 * What stands at one end of a connection for an object at the other. Made by the session's table of
 * addresses, one for each address at a time; keeps the session, and through it the far object,
 * until its last reference goes. Thread-safe.
 */
class ProxyBinder final : public AIBinder {
  public:
    ProxyBinder(std::shared_ptr<zarvo::host::Session> session, uint64_t address, int32_t stability)
        : mSession(std::move(session)), mAddress(address), mStability(stability) {}

    ProxyBinder* AsProxy() override { return this; }
    const AIBinder_Class* Class() const override { return mClass.load(); }
    bool AssociateClass(const AIBinder_Class* clazz) override;
    bool IsAlive() const override { return mSession->IsAlive(); }
    AParcel* NewParcel() override;
    /** Checks the stability of a method's object, then sends. */
    binder_status_t Transact(transaction_code_t code, const AParcel& in, AParcel* out,
                             binder_flags_t flags) override;

    bool IsOf(const zarvo::host::Session* session) const { return mSession.get() == session; }
    uint64_t Address() const { return mAddress; }
    int32_t Level() const { return mStability; }

    /** Lists the link; STATUS_DEAD_OBJECT if the connection is gone. */
    binder_status_t Link(std::shared_ptr<DeathLink> link);
    /** Takes one such link off and drops it. */
    binder_status_t Unlink(const AIBinder_DeathRecipient* recipient, const void* cookie);
    /** Takes a link off that its recipient drops. */
    void Forget(const DeathLink* link);
    /** The connection is gone: fires every link, on this thread. */
    void NotifyDeath();

  private:
    ~ProxyBinder() override;

    bool HasDescriptor(const std::u16string& descriptor);
    std::optional<std::u16string> AskDescriptor();
    std::shared_ptr<DeathLink> TakeFirstLink();

    const std::shared_ptr<zarvo::host::Session> mSession;
    const uint64_t mAddress;
    const int32_t mStability;
    std::atomic<const AIBinder_Class*> mClass{nullptr};

    std::mutex mMutex;
    std::optional<std::u16string> mDescriptor;      // mMutex
    std::deque<std::shared_ptr<DeathLink>> mLinks;  // mMutex
};

}  // namespace zarvo::host
