#pragma once

#include <atomic>
#include <mutex>

#include "host/binder/Binder.h"
#include "host/binder/Class.h"

namespace zarvo::host {

/**
 * An object of this process, with its class's user data. In this process it is called directly, on
 * the caller's thread; connections call it through Transact as well. Ends its user data with
 * itself. Thread-safe; the class's functions run with no lock held.
 */
class LocalBinder final : public AIBinder {
  public:
    /** Runs onCreate; the caller has the one reference. */
    LocalBinder(const AIBinder_Class* clazz, void* args)
        : mClass(clazz), mUserData(clazz->onCreate(args)) {}

    LocalBinder* AsLocal() override { return this; }
    const AIBinder_Class* Class() const override { return mClass; }
    bool AssociateClass(const AIBinder_Class* clazz) override;
    bool IsAlive() const override { return true; }
    AParcel* NewParcel() override;
    /** Checks the interface token, then runs onTransact; special transactions it answers itself. */
    binder_status_t Transact(transaction_code_t code, const AParcel& in, AParcel* out,
                             binder_flags_t flags) override;

    void* UserData() const { return mUserData; }

    /** Sets the level of an object that has none, or that very one. */
    bool DeclareStability(int32_t level);
    void ReplaceStability(int32_t level) { mStability.store(level); }
    /** The level; one without becomes this library's. */
    int32_t SettleStability();

    void SetExtension(Ref<AIBinder> extension);
    Ref<AIBinder> Extension() const;

  private:
    ~LocalBinder() override;

    binder_status_t CallMethod(transaction_code_t code, const AParcel& in, AParcel* out);
    bool TakeToken(const AParcel& in) const;

    const AIBinder_Class* const mClass;
    void* const mUserData;
    std::atomic<int32_t> mStability{0};

    mutable std::mutex mMutex;
    Ref<AIBinder> mExtension;  // mMutex
};

}  // namespace zarvo::host
