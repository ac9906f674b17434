#include "host/binder/services/FoundServices.h"

#include <algorithm>
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

void LetCall(RpcSession& session) {
    const ThreadPool& pool = ThreadPool::Instance();
    if (!pool.IsStarted()) return;
    if (!session.OpenIncoming(std::min(pool.Threads(), kMostIncoming)) && session.IsAlive()) {
        BINDER_LOGE("a service cannot call this process: no connection or no thread");
    }
}

}  // namespace

FoundServices& FoundServices::Instance() {
    static auto* const services = new FoundServices();
    return *services;
}

Ref<AIBinder> FoundServices::Find(const std::string& instance, const std::string& path) {
    // A session ends with the last object of it, which another thread may let go at any moment.
    for (int i = 0; i < kTries; ++i) {
        auto session = Known(instance);
        if (session == nullptr) session = Connect(instance, path);
        if (session == nullptr) break;
        LetCall(*session);
        if (auto root = AskRoot(*session)) return root;
        if (session->IsAlive()) break;
    }
    return {};
}

void FoundServices::Start() {
    std::vector<std::shared_ptr<RpcSession>> sessions;
    {
        const std::lock_guard lock(mMutex);
        for (const auto& [instance, known] : mSessions) {
            if (auto session = known.lock()) sessions.push_back(std::move(session));
        }
    }
    for (const auto& session : sessions)
        LetCall(*session);
}

std::shared_ptr<RpcSession> FoundServices::Known(const std::string& instance) const {
    const std::lock_guard lock(mMutex);
    const auto known = mSessions.find(instance);
    auto session = known == mSessions.end() ? nullptr : known->second.lock();
    return session != nullptr && session->IsAlive() ? session : nullptr;
}

std::shared_ptr<RpcSession> FoundServices::Connect(const std::string& instance,
                                                   const std::string& path) {
    RpcClientSettings settings;
    settings.dial = [path] { return Socket::Connect(path); };
    auto session = ConnectRpc(settings);
    if (session == nullptr) return nullptr;
    const std::lock_guard lock(mMutex);
    auto& known = mSessions[instance];
    if (auto other = known.lock(); other != nullptr && other->IsAlive()) return other;
    known = session;
    return session;
}

}  // namespace zarvo::host
