#include "host/binder/LoopbackConnection.h"

#include <array>

#include "host/binder/Stability.h"

namespace zarvo::host {

LoopbackConnection::LoopbackConnection()
    : mServer(this, AddressTable::Side::kServer, &mClient),
      mClient(this, AddressTable::Side::kClient, &mServer) {}

bool LoopbackConnection::Open(LocalBinder* root) {
    mRootStability = Stability::Settle(root);
    return mServer.Table().Lend(root, &mRootAddress) == STATUS_OK && mNotices.Start();
}

Ref<AIBinder> LoopbackConnection::Root() {
    Ref<AIBinder> proxy;
    if (const auto root = mServer.Table().Local(mRootAddress);
        root && mServer.SendLocal(root.Get(), &proxy) == STATUS_OK) {
        return proxy;
    }
    return mClient.Table().Receive(mRootAddress, mRootStability, mClient.Self());
}

void LoopbackConnection::Kill() {
    if (!mAlive.exchange(false)) return;
    for (LoopbackEnd* const end : {&mServer, &mClient}) {
        end->Oneways().Finish();
        end->Oneways().Discard();
    }
    const AddressTable::Remains server = mServer.Table().Close();
    const AddressTable::Remains client = mClient.Table().Close();
    mNotices.Post(
            [self = shared_from_this(), atServer = server.proxies, atClient = client.proxies] {
                self->GiveNotices(atServer);
                self->GiveNotices(atClient);
                const std::lock_guard lock(self->mMutex);
                self->mNoticesGiven = true;
                self->mNoticed.notify_all();
            });
    mNotices.Finish();
}

void LoopbackConnection::GiveNotices(const std::vector<Ref<AIBinder>>& proxies) {
    for (const auto& proxy : proxies)
        proxy->AsProxy()->NotifyDeath();
}

void LoopbackConnection::WaitForNotices() {
    if (IsAlive() || mNotices.IsThisThread()) return;
    std::unique_lock lock(mMutex);
    mNoticed.wait(lock, [this] { return mNoticesGiven; });
}

void LoopbackConnection::JoinThreads() {
    const std::array threads{&mNotices, &mServer.Oneways(), &mClient.Oneways()};
    bool inside = false;
    for (const TaskThread* const thread : threads)
        inside = inside || thread->IsThisThread();
    for (TaskThread* const thread : threads)
        inside ? thread->LetGo() : thread->Join();
}

}  // namespace zarvo::host
