#pragma once

#include <mutex>

#if defined(AON_CHECK_LOCK_ORDER)
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#endif

/** Clang's thread-safety annotations; empty for compilers that do not know them. */
#if defined(__clang__)
#define AON_TSA(x) __attribute__((x))
#else
#define AON_TSA(x)
#endif
#define CAPABILITY(x) AON_TSA(capability(x))
#define SCOPED_CAPABILITY AON_TSA(scoped_lockable)
#define GUARDED_BY(x) AON_TSA(guarded_by(x))
#define REQUIRES(...) AON_TSA(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) AON_TSA(locks_excluded(__VA_ARGS__))
#define ACQUIRE(...) AON_TSA(acquire_capability(__VA_ARGS__))
#define RELEASE(...) AON_TSA(release_capability(__VA_ARGS__))
#define TRY_ACQUIRE(...) AON_TSA(try_acquire_capability(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS AON_TSA(no_thread_safety_analysis)

namespace zarvo::aon {

/**
 * The lock order of the whole service, outermost first. A thread may take a mutex only while
 * everything it holds stands further up:
 *
 *     kService   AONService::mLock, held through every operation of the service
 *     kLeaf      AONManager::mMutex, AONManager::mNotifyMutex, RemoteCallbackManager::mLock and
 *                mListenerMutex: never two of them together, and no client, listener or manager
 *                callback is called under one
 */
enum class LockRank { kService, kLeaf };

/**
 * A std::mutex that clang's analysis can follow. In builds with AON_CHECK_LOCK_ORDER it also
 * checks the lock order at run time and ends the process with both names when it is broken.
 */
class CAPABILITY("mutex") Mutex {
  public:
    Mutex(const char* name, LockRank rank);
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() ACQUIRE();
    bool try_lock() TRY_ACQUIRE(true);
    void unlock() RELEASE();

  private:
    std::mutex mMutex;
#if defined(AON_CHECK_LOCK_ORDER)
    struct HeldLocks {
        static constexpr std::size_t kMost = 8;
        std::array<const Mutex*, kMost> locks{};
        std::size_t count = 0;
    };
    static HeldLocks& Held();
    void CheckOrder() const;
    void NoteHeld() const;
    void NoteReleased() const;

    const char* mName;
    LockRank mRank;
#endif
};

/** Holds a Mutex from its construction to its end, or to an earlier unlock(). */
class SCOPED_CAPABILITY ScopedLock {
  public:
    explicit ScopedLock(Mutex& mutex) ACQUIRE(mutex) : mMutex(&mutex) { mutex.lock(); }
    ~ScopedLock() RELEASE() {
        if (mMutex != nullptr) mMutex->unlock();
    }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

    void unlock() RELEASE() {
        mMutex->unlock();
        mMutex = nullptr;
    }

  private:
    Mutex* mMutex;
};

#if defined(AON_CHECK_LOCK_ORDER)

inline Mutex::Mutex(const char* name, LockRank rank) : mName(name), mRank(rank) {}

inline Mutex::HeldLocks& Mutex::Held() {
    static thread_local HeldLocks held;
    return held;
}

inline void Mutex::CheckOrder() const {
    const HeldLocks& held = Held();
    for (std::size_t i = 0; i < held.count; ++i) {
        if (held.locks[i]->mRank < mRank) continue;
        std::fprintf(stderr, "lock order broken: %s wanted while %s is held\n", mName,
                     held.locks[i]->mName);
        std::abort();
    }
    if (held.count == HeldLocks::kMost) std::abort();
}

inline void Mutex::NoteHeld() const {
    HeldLocks& held = Held();
    held.locks[held.count++] = this;
}

inline void Mutex::NoteReleased() const {
    HeldLocks& held = Held();
    std::size_t i = held.count;
    while (i > 0 && held.locks[i - 1] != this)
        --i;
    if (i == 0) std::abort();
    for (; i < held.count; ++i)
        held.locks[i - 1] = held.locks[i];
    --held.count;
}

inline void Mutex::lock() {
    CheckOrder();
    mMutex.lock();
    NoteHeld();
}

inline bool Mutex::try_lock() {
    CheckOrder();
    if (!mMutex.try_lock()) return false;
    NoteHeld();
    return true;
}

inline void Mutex::unlock() {
    NoteReleased();
    mMutex.unlock();
}

#else

inline Mutex::Mutex(const char* /*name*/, LockRank /*rank*/) {}
inline void Mutex::lock() {
    mMutex.lock();
}
inline bool Mutex::try_lock() {
    return mMutex.try_lock();
}
inline void Mutex::unlock() {
    mMutex.unlock();
}

#endif

}  // namespace zarvo::aon
