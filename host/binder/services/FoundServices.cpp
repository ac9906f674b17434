#include "host/binder/services/FoundServices.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>
#include <vector>

#include "host/binder/BinderLog.h"
#include "host/binder/services/ThreadPool.h"

namespace zarvo::host {

namespace {

/** Connections on which one service may call this process at the same time. */
constexpr uint32_t kMostIncoming = 2;
/** To find a session that stays, when others end theirs. */
constexpr int kTries = 10;

/** For the services found so far to let themselves be called, each. */
constexpr std::chrono::seconds kLetCallTime{5};

void LetCall(RpcSession& session, Deadline deadline) {
    const ThreadPool& pool = ThreadPool::Instance();
    if (!pool.IsStarted()) return;
    const uint32_t threads = std::min(pool.Threads(), kMostIncoming);
    if (!session.OpenIncoming(threads, deadline) && session.IsAlive()) {
        BINDER_LOGE("a service cannot call this process: no connection or no thread");
    }
}

}  // namespace

FoundServices& FoundServices::Instance() {
    static auto* const services = new FoundServices();
    return *services;
}

Ref<AIBinder> FoundServices::Find(const std::string& instance, const std::string& path,
                                  Deadline deadline) {
    // A session ends with the last object of it, which another thread may let go at any moment.
    for (int i = 0; i < kTries; ++i) {
        Ref<AIBinder> root;
        const auto session = Known(instance, &root);
        if (session == nullptr || !session->IsAlive()) return Connect(instance, path, deadline);
        LetCall(*session, deadline);
        if (!root) root = AskRoot(*session);
        if (root) return root;
        if (session->IsAlive()) break;
    }
    errno = ETIMEDOUT;
    return {};
}

void FoundServices::Start() {
    std::vector<std::shared_ptr<RpcSession>> sessions;
    {
        const std::lock_guard lock(mMutex);
        for (const auto& [instance, known] : mServices) {
            if (auto session = known.session.lock()) sessions.push_back(std::move(session));
        }
    }
    for (const auto& session : sessions)
        LetCall(*session, std::chrono::steady_clock::now() + kLetCallTime);
}

std::shared_ptr<RpcSession> FoundServices::Known(const std::string& instance,
                                                 Ref<AIBinder>* root) const {
    const std::lock_guard lock(mMutex);
    return KnownLocked(instance, root);
}

std::shared_ptr<RpcSession> FoundServices::KnownLocked(const std::string& instance,
                                                       Ref<AIBinder>* root) const {
    const auto known = mServices.find(instance);
    if (known == mServices.end()) return nullptr;
    auto session = known->second.session.lock();
    if (session != nullptr && session->IsAlive()) *root = known->second.root.Promote();
    return session;
}

Ref<AIBinder> FoundServices::Connect(const std::string& instance, const std::string& path,
                                     Deadline deadline) {
    RpcClientSettings settings;
    settings.dial = [path](Deadline until) { return Socket::Connect(path, until); };
    settings.deadline = deadline;
    const auto session = ConnectRpc(settings);
    if (session == nullptr) return {};
    LetCall(*session, deadline);
    session->Outgoing().LimitReceiveTime(deadline);
    const Ref<AIBinder> root = AskRoot(*session);
    session->Outgoing().LimitReceiveTime(Deadline::max());
    if (root) return Enter(instance, session, root);
    session->Terminate();
    errno = ETIMEDOUT;
    return {};
}

Ref<AIBinder> FoundServices::Enter(const std::string& instance,
                                   const std::shared_ptr<RpcSession>& session,
                                   const Ref<AIBinder>& root) {
    Ref<AIBinder> other;
    std::shared_ptr<RpcSession> others;
    const std::lock_guard lock(mMutex);
    others = KnownLocked(instance, &other);
    if (other) return other;
    mServices.insert_or_assign(instance, Service{session, WeakRef(root->Refs())});
    return root;
}

}  // namespace zarvo::host
