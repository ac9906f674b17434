#include "host/binder/Loopback.h"

#include "host/binder/LocalBinder.h"
#include "host/binder/rpc/RpcClient.h"
#include "host/binder/rpc/RpcServer.h"

namespace zarvo::host {

namespace {

constexpr uint32_t kServingThreads = 10;
constexpr size_t kCallbackThreads = 2;

}  // namespace

/** Both ends of the connection. */
struct Loopback::Ends {
    std::shared_ptr<RpcServer> server;
    std::shared_ptr<RpcSession> atServer;
    std::shared_ptr<RpcSession> atClient;
    Ref<AIBinder> root;

    bool Open(AIBinder* served) {
        const RpcServer::Settings serverSettings{.threads = kServingThreads};
        server = std::make_shared<RpcServer>(serverSettings, Ref<AIBinder>::Share(served));
        RpcClientSettings settings;
        settings.dial = [to = std::weak_ptr(server)](Deadline) {
            auto [near, far] = Socket::Pair();
            const auto listening = to.lock();
            return listening != nullptr && listening->Accept(std::move(far)) ? std::move(near)
                                                                             : Socket();
        };
        atClient = ConnectRpc(settings);
        if (atClient == nullptr || !atClient->OpenIncoming(kCallbackThreads)) return false;
        const auto sessions = server->Sessions();
        if (sessions.empty()) return false;
        atServer = sessions.front();
        root = AskRoot(*atClient);
        return root && atClient->WatchForDeath() == STATUS_OK &&
               atServer->WatchForDeath() == STATUS_OK;
    }
    void Kill() const {
        if (atClient != nullptr) atClient->Terminate();
        server->Close();
    }
    void Join() const {
        for (const auto& session : {atClient, atServer}) {
            if (session != nullptr) session->JoinThreads();
        }
        server->JoinThreads();
    }
};

std::shared_ptr<Loopback> Loopback::Connect(AIBinder* root) {
    if (root == nullptr || root->AsLocal() == nullptr) return nullptr;
    auto loopback = std::shared_ptr<Loopback>(new Loopback(std::make_unique<Ends>()));
    return loopback->mEnds->Open(root) ? loopback : nullptr;
}

Loopback::Loopback(std::unique_ptr<Ends> ends) : mEnds(std::move(ends)) {}

Loopback::~Loopback() {
    Kill();
    mEnds->Join();
}

ndk::SpAIBinder Loopback::Root() {
    return ndk::SpAIBinder(Ref(mEnds->root).Release());
}

void Loopback::Kill() {
    mEnds->Kill();
}

void Loopback::WaitForNotices() {
    mEnds->atServer->WaitForNotices();
    mEnds->atClient->WaitForNotices();
}

}  // namespace zarvo::host
