#pragma once

#include <android/binder_ibinder.h>

#include <atomic>
#include <cstdint>

#include "host/binder/Ref.h"

namespace zarvo::host {

class LocalBinder;
class ProxyBinder;

/**
 * Counts the references to one AIBinder. The object ends with the last strong one, this with the
 * last of both kinds; so its address orders and names objects also after their end. Thread-safe.
 */
class ABINDER_API RefBlock {
  public:
    explicit RefBlock(AIBinder* object) : mObject(object) {}

    void IncStrong() { mStrong.fetch_add(1, std::memory_order_relaxed); }
    void DecStrong();
    /** The object with one more strong reference, null if it has ended. */
    AIBinder* Promote();
    int32_t StrongCount() const { return mStrong.load(std::memory_order_relaxed); }

    void IncWeak() { mWeak.fetch_add(1, std::memory_order_relaxed); }
    void DecWeak();

  private:
    ~RefBlock() = default;

    AIBinder* const mObject;
    std::atomic<int32_t> mStrong{1};
    /** All strong references together count as one. */
    std::atomic<int32_t> mWeak{1};
};

/** Transactions every object answers by itself, besides those of its interface. */
enum SpecialTransaction : transaction_code_t {
    kPingTransaction = 0x5F504E47,       // _PNG
    kInterfaceTransaction = 0x5F4E5446,  // _NTF
    kExtensionTransaction = 0x5F455854,  // _EXT
    kDebugPidTransaction = 0x5F504944,   // _PID
};

}  // namespace zarvo::host

/**
 * What local objects and proxies have in common. Made with one strong reference, ends itself with
 * the last one, on that thread and with no lock held. Thread-safe.
 */
struct AIBinder {
  public:
    AIBinder(const AIBinder&) = delete;
    AIBinder& operator=(const AIBinder&) = delete;

    void IncStrong() { mRefs->IncStrong(); }
    void DecStrong() { mRefs->DecStrong(); }
    zarvo::host::RefBlock* Refs() const { return mRefs; }

    /** This as what it is; the other one is null. */
    virtual zarvo::host::LocalBinder* AsLocal() { return nullptr; }
    virtual zarvo::host::ProxyBinder* AsProxy() { return nullptr; }

    virtual const AIBinder_Class* Class() const = 0;
    virtual bool AssociateClass(const AIBinder_Class* clazz) = 0;
    virtual bool IsAlive() const = 0;
    /** A fresh parcel for a call of this object. */
    virtual AParcel* NewParcel() = 0;
    /** Any transaction; `in` is read from its start, `out` is empty. */
    virtual binder_status_t Transact(transaction_code_t code, const AParcel& in, AParcel* out,
                                     binder_flags_t flags) = 0;

  protected:
    AIBinder() : mRefs(new zarvo::host::RefBlock(this)) {}
    virtual ~AIBinder() = default;

  private:
    friend class zarvo::host::RefBlock;

    zarvo::host::RefBlock* const mRefs;
};

namespace zarvo::host {

/** Names an object without keeping it. As thread-safe as a plain pointer. */
class WeakRef {
  public:
    explicit WeakRef(RefBlock* refs) : mRefs(refs) { mRefs->IncWeak(); }
    WeakRef(const WeakRef& other) : WeakRef(other.mRefs) {}
    WeakRef& operator=(WeakRef other) noexcept {
        std::swap(mRefs, other.mRefs);
        return *this;
    }
    ~WeakRef() { mRefs->DecWeak(); }

    RefBlock* Refs() const { return mRefs; }
    /** The object, null if it has ended. */
    Ref<AIBinder> Promote() const { return Ref<AIBinder>::Adopt(mRefs->Promote()); }

  private:
    RefBlock* mRefs;
};

}  // namespace zarvo::host

/** A name of an object, owned by the caller. */
struct AIBinder_Weak {
    zarvo::host::WeakRef ref;
};
