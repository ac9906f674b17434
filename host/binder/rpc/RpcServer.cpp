#include "host/binder/rpc/RpcServer.h"

#include <sys/random.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace zarvo::host {

namespace {

constexpr std::chrono::seconds kHandshakeTime{5};

template <typename T>
bool SendValue(Connection& connection, T value) {
    std::array part{iovec{&value, sizeof(value)}};
    return connection.Send(part);
}

bool ReceiveInit(Connection& connection) {
    wire::Init init;
    return connection.Receive(&init) && init.text == wire::Init().text;
}

bool MakeId(wire::SessionId* id) {
    return getrandom(id->data(), id->size(), 0) == static_cast<ssize_t>(id->size());
}

}  // namespace

RpcServer::RpcServer(Settings settings, Ref<AIBinder> root)
    : mSettings(settings), mRoot(std::move(root)) {}

RpcServer::~RpcServer() = default;

bool RpcServer::Accept(Socket socket) {
    const Shared connection = mAdmission.Admit(std::move(socket));
    if (connection == nullptr || !Enter(connection)) return false;
    const bool spawned = mThreads.Spawn([self = shared_from_this(), connection] {
        self->Greet(connection);
        self->Greeted(connection);
    });
    if (!spawned) Greeted(connection);
    return spawned;
}

void RpcServer::Greet(const Shared& connection) {
    wire::ConnectionHeader header{};
    connection->LimitReceiveTime(std::chrono::steady_clock::now() + kHandshakeTime);
    if (!connection->Receive(&header)) return;
    if (header.sessionIdBytes == 0) GreetNew(connection, header);
    if (header.sessionIdBytes == wire::kSessionIdBytes) GreetKnown(connection, header);
}

void RpcServer::GreetNew(const Shared& connection, const wire::ConnectionHeader& header) {
    wire::NewSession answer{};
    answer.version = std::min(header.version, mSettings.newestVersion);
    if (!SendValue(*connection, answer)) return;
    const bool isIncoming = (header.options & wire::kIncoming) != 0;
    if (isIncoming || header.fileDescriptorMode != 0 || !ReceiveInit(*connection)) return;
    const auto session = NewSession(answer.version);
    if (session == nullptr) return;
    Greeted(connection);
    session->Serve(connection);
    session->Terminate();
}

void RpcServer::GreetKnown(const Shared& connection, const wire::ConnectionHeader& header) {
    wire::SessionId id;
    if (!connection->Receive(&id)) return;
    const bool isIncoming = (header.options & wire::kIncoming) != 0;
    if (!isIncoming && !ReceiveInit(*connection)) return;
    const auto session = Find(id, !isIncoming);
    if (session == nullptr) return;
    Greeted(connection);
    if (!isIncoming) {
        session->Serve(connection);
        session->Terminate();
    } else {
        // Who does not wait for it any more has gone on without it.
        session->Outgoing().Add(connection, [&] { return SendValue(*connection, wire::Init()); });
    }
}

std::shared_ptr<RpcSession> RpcServer::NewSession(uint32_t version) {
    RpcSession::Settings settings;
    settings.side = AddressTable::Side::kServer;
    settings.version = version;
    settings.threads = mSettings.threads;
    settings.acknowledgeWithReply = mSettings.acknowledgeWithReply;
    if (!MakeId(&settings.id)) return nullptr;
    const std::weak_ptr<RpcServer> self = weak_from_this();
    settings.root = [self] {
        const auto server = self.lock();
        return server == nullptr ? Ref<AIBinder>() : server->Root();
    };
    settings.onEnd = [self, id = settings.id] {
        if (const auto server = self.lock()) server->Forget(id);
    };
    // Not in one piece with its count: this list knows it longer than it lives.
    std::shared_ptr<RpcSession> session(new RpcSession(settings));
    const std::lock_guard lock(mMutex);
    if (mClosed) return nullptr;
    mSessions.emplace(settings.id, Entry{session, 1});
    return session;
}

std::shared_ptr<RpcSession> RpcServer::Find(const wire::SessionId& id, bool serves) {
    const std::lock_guard lock(mMutex);
    const auto entry = mSessions.find(id);
    if (entry == mSessions.end()) return nullptr;
    if (serves && entry->second.serving >= mSettings.threads) return nullptr;
    if (serves) ++entry->second.serving;
    return entry->second.session.lock();
}

void RpcServer::Forget(const wire::SessionId& id) {
    const std::lock_guard lock(mMutex);
    const auto entry = mSessions.find(id);
    if (entry == mSessions.end()) return;
    std::erase_if(mEnded, [](const auto& session) { return session.expired(); });
    mEnded.push_back(std::move(entry->second.session));
    mSessions.erase(entry);
}

Ref<AIBinder> RpcServer::Root() const {
    const std::lock_guard lock(mMutex);
    return mRoot;
}

std::vector<std::shared_ptr<RpcSession>> RpcServer::Sessions() const {
    std::vector<std::shared_ptr<RpcSession>> sessions;
    const std::lock_guard lock(mMutex);
    for (const auto& [id, entry] : mSessions) {
        if (auto session = entry.session.lock()) sessions.push_back(std::move(session));
    }
    return sessions;
}

bool RpcServer::Enter(const Shared& connection) {
    const std::lock_guard lock(mMutex);
    if (mClosed) return false;
    mGreeting.insert(connection);
    return true;
}

void RpcServer::Greeted(const Shared& connection) {
    connection->LimitReceiveTime(Deadline::max());
    const std::lock_guard lock(mMutex);
    mGreeting.erase(connection);
}

void RpcServer::Close() {
    Ref<AIBinder> root;
    {
        const std::lock_guard lock(mMutex);
        mClosed = true;
        std::swap(root, mRoot);
        for (const Shared& connection : mGreeting)
            connection->Shutdown();
    }
    for (const auto& session : Sessions())
        session->Terminate();
}

void RpcServer::JoinThreads() {
    mThreads.JoinAll();
    std::vector<std::weak_ptr<RpcSession>> ending;
    {
        const std::lock_guard lock(mMutex);
        ending.swap(mEnded);
        // Whoever ends one of these is not done yet.
        for (const auto& [id, entry] : mSessions)
            ending.push_back(entry.session);
    }
    for (const auto& weak : ending) {
        if (const auto session = weak.lock()) session->WaitForNotices();
    }
}

}  // namespace zarvo::host
