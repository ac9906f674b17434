#include "platform/Mutex.h"

#include <gtest/gtest.h>

namespace zarvo::aon {
namespace {

/** What clang's analysis would refuse. */
void TakeTwice(Mutex& mutex) NO_THREAD_SAFETY_ANALYSIS {
    mutex.lock();
    mutex.lock();
}

TEST(MutexDeathTest, EndsTheProcessWhenTheLockOrderIsBroken) {
    Mutex service("service", LockRank::kService);
    Mutex registry("registry", LockRank::kLeaf);
    Mutex manager("manager", LockRank::kLeaf);
    EXPECT_DEATH(
            {
                ScopedLock inner(registry);
                ScopedLock outer(service);
            },
            "lock order broken: service wanted while registry is held");
    EXPECT_DEATH(
            {
                ScopedLock one(registry);
                ScopedLock other(manager);
            },
            "lock order broken: manager wanted while registry is held");
    EXPECT_DEATH(TakeTwice(service), "lock order broken: service wanted while service is held");
}

TEST(Mutex, LetsItselfBeTakenInOrderAgainAndAgain) {
    Mutex service("service", LockRank::kService);
    Mutex registry("registry", LockRank::kLeaf);
    Mutex manager("manager", LockRank::kLeaf);
    for (int i = 0; i < 3; ++i) {
        ScopedLock outer(service);
        { ScopedLock inner(registry); }
        ScopedLock inner(manager);
        outer.unlock();  // before the inner one
        inner.unlock();
        if (!registry.try_lock()) FAIL() << "nobody holds it";
        registry.unlock();
    }
}

}  // namespace
}  // namespace zarvo::aon
