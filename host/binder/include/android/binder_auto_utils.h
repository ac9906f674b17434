/**
 * Owners for the C types of the binder NDK: each frees what it holds exactly once.
 *
 * None of these objects may be changed by one thread while another one uses it; what they point
 * to follows the rules of the C API.
 */
#pragma once

#include <android/binder_ibinder.h>
#include <android/binder_parcel.h>
#include <android/binder_status.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <string>
#include <utility>

namespace ndk {

namespace internal {

/** Ends the process because a rule of these helpers was broken; `why` goes to stderr. */
[[noreturn]] inline void Die(const char* why) {
    std::fprintf(stderr, "binder: %s\n", why);
    std::abort();
}

}  // namespace internal

/**
 * A strong reference to a binder object, or null. Copying takes another reference, destruction
 * gives one back, which for the last reference of a local object destroys it on this thread.
 */
class SpAIBinder {
  public:
    SpAIBinder() = default;
    SpAIBinder(std::nullptr_t) {}  // NOLINT: implicit, as null is

    /** Adopts one reference: the count does not change. */
    explicit SpAIBinder(AIBinder* binder) : mBinder(binder) {}

    SpAIBinder(const SpAIBinder& other) : mBinder(other.mBinder) { AIBinder_incStrong(mBinder); }
    SpAIBinder(SpAIBinder&& other) noexcept : mBinder(std::exchange(other.mBinder, nullptr)) {}
    ~SpAIBinder() { set(nullptr); }

    // cppcheck-suppress operatorEqVarError ; set() assigns it
    SpAIBinder& operator=(const SpAIBinder& other) {
        if (this != &other) {
            AIBinder_incStrong(other.mBinder);
            set(other.mBinder);
        }
        return *this;
    }
    SpAIBinder& operator=(SpAIBinder&& other) noexcept {
        if (this != &other) set(std::exchange(other.mBinder, nullptr));
        return *this;
    }

    /**
     * Adopts one reference to `binder` and releases the one held before. Aborts if another thread
     * changed this object meanwhile.
     */
    void set(AIBinder* binder) {
        AIBinder* old = std::exchange(mBinder, binder);
        if (old == nullptr) return;
        AIBinder_decStrong(old);
        if (*const_cast<AIBinder* volatile*>(&mBinder) != binder) {
            internal::Die("SpAIBinder changed by two threads at once");
        }
    }

    /** The object, still owned by this reference. */
    AIBinder* get() const { return mBinder; }

    /** Where a C function may store a reference for this object to adopt. Only while it is null. */
    AIBinder** getR() { return &mBinder; }

  private:
    AIBinder* mBinder = nullptr;
};

// Binder objects compare by address: a process knows each object by one address only.
// NOLINTBEGIN(bugprone-macro-parentheses): an operator takes none
#define NDK_INTERNAL_COMPARE(OP, ORDER)                                     \
    inline bool operator OP(const SpAIBinder& lhs, const SpAIBinder& rhs) { \
        return ORDER<const AIBinder*>()(lhs.get(), rhs.get());              \
    }                                                                       \
    inline bool operator OP(const SpAIBinder& lhs, const AIBinder* rhs) {   \
        return ORDER<const AIBinder*>()(lhs.get(), rhs);                    \
    }                                                                       \
    inline bool operator OP(const AIBinder* lhs, const SpAIBinder& rhs) {   \
        return ORDER<const AIBinder*>()(lhs, rhs.get());                    \
    }
// NOLINTEND(bugprone-macro-parentheses)
NDK_INTERNAL_COMPARE(==, std::equal_to)
NDK_INTERNAL_COMPARE(!=, std::not_equal_to)
NDK_INTERNAL_COMPARE(<, std::less)
NDK_INTERNAL_COMPARE(<=, std::less_equal)
NDK_INTERNAL_COMPARE(>, std::greater)
NDK_INTERNAL_COMPARE(>=, std::greater_equal)
#undef NDK_INTERNAL_COMPARE

namespace impl {

/** Sole owner of one C resource, freed with Destroy (which must accept DEFAULT). Move-only. */
template <typename T, void (*Destroy)(T), T DEFAULT>
class ScopedAResource {
  public:
    ScopedAResource() = default;
    /** Adopts `resource`. */
    explicit ScopedAResource(T resource) : mResource(resource) {}

    ScopedAResource(const ScopedAResource&) = delete;
    ScopedAResource& operator=(const ScopedAResource&) = delete;
    ScopedAResource(ScopedAResource&& other) noexcept : mResource(other.release()) {}
    ScopedAResource& operator=(ScopedAResource&& other) noexcept {
        if (this != &other) set(other.release());
        return *this;
    }
    ~ScopedAResource() { Destroy(mResource); }

    /** Adopts `resource` and frees the one held before. */
    void set(T resource) { Destroy(std::exchange(mResource, resource)); }

    /** The resource, still owned by this object. */
    T get() const { return mResource; }

    /** Hands the resource over to the caller and keeps DEFAULT. */
    [[nodiscard]] T release() { return std::exchange(mResource, DEFAULT); }

    /** Where a C function may store a resource for this object to adopt. Only while empty. */
    T* getR() { return &mResource; }

  private:
    T mResource = DEFAULT;
};

}  // namespace impl

/** Owns a parcel. Compares by address. */
class ScopedAParcel : public impl::ScopedAResource<AParcel*, AParcel_delete, nullptr> {
  public:
    ScopedAParcel() = default;
    explicit ScopedAParcel(AParcel* parcel) : ScopedAResource(parcel) {}

    bool operator==(const ScopedAParcel& rhs) const { return get() == rhs.get(); }
    bool operator!=(const ScopedAParcel& rhs) const { return get() != rhs.get(); }
    bool operator<(const ScopedAParcel& rhs) const { return std::less<>()(get(), rhs.get()); }
    bool operator<=(const ScopedAParcel& rhs) const { return !(rhs < *this); }
    bool operator>(const ScopedAParcel& rhs) const { return rhs < *this; }
    bool operator>=(const ScopedAParcel& rhs) const { return !(*this < rhs); }
};

/**
 * Owns the outcome of a call. A default-made one holds no status at all: it is not OK, and nothing
 * but isOk() and the assignments may be used on it. Service methods return one of the makers'.
 */
class ScopedAStatus : public impl::ScopedAResource<AStatus*, AStatus_delete, nullptr> {
  public:
    ScopedAStatus() = default;
    explicit ScopedAStatus(AStatus* status) : ScopedAResource(status) {}

    bool isOk() const { return get() != nullptr && AStatus_isOk(get()); }

    binder_exception_t getExceptionCode() const { return AStatus_getExceptionCode(get()); }

    /** 0 unless the exception code is EX_SERVICE_SPECIFIC. */
    int32_t getServiceSpecificError() const { return AStatus_getServiceSpecificError(get()); }

    /** STATUS_OK unless the exception code is EX_TRANSACTION_FAILED. */
    binder_status_t getStatus() const { return AStatus_getStatus(get()); }

    /** "" if there is none; valid as long as the status. */
    const char* getMessage() const { return AStatus_getMessage(get()); }

    /** All of the above, for people. */
    std::string getDescription() const {
        const char* text = AStatus_getDescription(get());
        std::string description(text);
        AStatus_deleteDescription(text);
        return description;
    }

    static ScopedAStatus ok() { return ScopedAStatus(AStatus_newOk()); }

    static ScopedAStatus fromExceptionCode(binder_exception_t exception) {
        return ScopedAStatus(AStatus_fromExceptionCode(exception));
    }

    static ScopedAStatus fromExceptionCodeWithMessage(binder_exception_t exception,
                                                      const char* message) {
        return ScopedAStatus(AStatus_fromExceptionCodeWithMessage(exception, message));
    }

    static ScopedAStatus fromServiceSpecificError(int32_t serviceSpecific) {
        return ScopedAStatus(AStatus_fromServiceSpecificError(serviceSpecific));
    }

    static ScopedAStatus fromServiceSpecificErrorWithMessage(int32_t serviceSpecific,
                                                             const char* message) {
        return ScopedAStatus(AStatus_fromServiceSpecificErrorWithMessage(serviceSpecific, message));
    }

    /** A transport failure: a service that returns one sends no reply, the caller sees `status`. */
    static ScopedAStatus fromStatus(binder_status_t status) {
        return ScopedAStatus(AStatus_fromStatus(status));
    }
};

inline std::ostream& operator<<(std::ostream& os, const ScopedAStatus& status) {
    return os << status.getDescription();
}

/** Owns a death recipient. Its links go away with it, without a notice. */
class ScopedAIBinder_DeathRecipient
    : public impl::ScopedAResource<AIBinder_DeathRecipient*, AIBinder_DeathRecipient_delete,
                                   nullptr> {
  public:
    ScopedAIBinder_DeathRecipient() = default;
    explicit ScopedAIBinder_DeathRecipient(AIBinder_DeathRecipient* recipient)
        : ScopedAResource(recipient) {}
};

/** Owns a weak reference to a binder object. */
class ScopedAIBinder_Weak
    : public impl::ScopedAResource<AIBinder_Weak*, AIBinder_Weak_delete, nullptr> {
  public:
    ScopedAIBinder_Weak() = default;
    explicit ScopedAIBinder_Weak(AIBinder_Weak* weak) : ScopedAResource(weak) {}

    /** A strong reference, or null if the object is gone or there never was one. */
    SpAIBinder promote() const {
        return get() == nullptr ? SpAIBinder() : SpAIBinder(AIBinder_Weak_promote(get()));
    }
};

namespace internal {

inline void CloseFileDescriptor(int fd) {
    if (fd >= 0) ::close(fd);
}

}  // namespace internal

/** Owns a file descriptor; -1 is none. */
class ScopedFileDescriptor : public impl::ScopedAResource<int, internal::CloseFileDescriptor, -1> {
  public:
    ScopedFileDescriptor() = default;
    explicit ScopedFileDescriptor(int fd) : ScopedAResource(fd) {}

    /** A second descriptor of the same file, closed on exec; none on failure. */
    ScopedFileDescriptor dup() const {
        return ScopedFileDescriptor(::fcntl(get(), F_DUPFD_CLOEXEC, 0));
    }
};

}  // namespace ndk
