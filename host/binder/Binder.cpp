#include "host/binder/Binder.h"

#include <functional>

#include "host/binder/BinderLog.h"

namespace zarvo::host {

void RefBlock::DecStrong() {
    if (mStrong.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    delete mObject;
    DecWeak();
}

AIBinder* RefBlock::Promote() {
    int32_t count = mStrong.load(std::memory_order_relaxed);
    while (count > 0) {
        if (mStrong.compare_exchange_weak(count, count + 1, std::memory_order_acquire,
                                          std::memory_order_relaxed)) {
            return mObject;
        }
    }
    return nullptr;
}

void RefBlock::DecWeak() {
    if (mWeak.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace zarvo::host

using zarvo::host::RefBlock;
using zarvo::host::WeakRef;

void AIBinder_incStrong(AIBinder* binder) {
    if (binder != nullptr) binder->IncStrong();
}

void AIBinder_decStrong(AIBinder* binder) {
    if (binder == nullptr) {
        BINDER_LOGE("AIBinder_decStrong: null has no references");
        return;
    }
    binder->DecStrong();
}

int32_t AIBinder_debugGetRefCount(AIBinder* binder) {
    return binder == nullptr ? -1 : binder->Refs()->StrongCount();
}

bool AIBinder_lt(const AIBinder* lhs, const AIBinder* rhs) {
    const auto refs = [](const AIBinder* binder) -> const RefBlock* {
        return binder == nullptr ? nullptr : binder->Refs();
    };
    return std::less<>{}(refs(lhs), refs(rhs));
}

AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder) {
    return binder == nullptr ? nullptr : new AIBinder_Weak{WeakRef(binder->Refs())};
}

void AIBinder_Weak_delete(AIBinder_Weak* weakBinder) {
    delete weakBinder;
}

AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder) {
    return weakBinder == nullptr ? nullptr : weakBinder->ref.Promote().Release();
}

AIBinder_Weak* AIBinder_Weak_clone(const AIBinder_Weak* weak) {
    return weak == nullptr ? nullptr : new AIBinder_Weak(*weak);
}

bool AIBinder_Weak_lt(const AIBinder_Weak* lhs, const AIBinder_Weak* rhs) {
    const auto refs = [](const AIBinder_Weak* weak) -> const RefBlock* {
        return weak == nullptr ? nullptr : weak->ref.Refs();
    };
    return std::less<>{}(refs(lhs), refs(rhs));
}
