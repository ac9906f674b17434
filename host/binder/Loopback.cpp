#include "host/binder/Loopback.h"

#include "host/binder/LoopbackConnection.h"

namespace zarvo::host {

std::shared_ptr<Loopback> Loopback::Connect(AIBinder* root) {
    LocalBinder* const local = root == nullptr ? nullptr : root->AsLocal();
    if (local == nullptr) return nullptr;
    auto connection = std::make_shared<LoopbackConnection>();
    if (!connection->Open(local)) return nullptr;
    return std::shared_ptr<Loopback>(new Loopback(std::move(connection)));
}

Loopback::Loopback(std::shared_ptr<LoopbackConnection> connection)
    : mConnection(std::move(connection)) {}

Loopback::~Loopback() {
    Kill();
    mConnection->JoinThreads();
}

ndk::SpAIBinder Loopback::Root() {
    return ndk::SpAIBinder(mConnection->Root().Release());
}

void Loopback::Kill() {
    mConnection->Kill();
}

void Loopback::WaitForNotices() {
    mConnection->WaitForNotices();
}

}  // namespace zarvo::host
