// A session between two ends of this library, overheard on its sockets.

#include <sys/socket.h>

#include <array>
#include <cstdlib>
#include <list>
#include <thread>

#include "fuzz/Peer.h"
#include "fuzz/Seeds.h"
#include "host/binder/rpc/RpcServer.h"

namespace zarvo::fuzz {
namespace {

using namespace zarvo::host;

/** Passes on what comes on one socket, until its other end hangs up, and keeps it. */
void Overhear(const Socket& from, const Socket& to, std::string* said) {
    std::array<char, 4096> some{};
    while (const size_t length = from.Receive(some.data(), some.size())) {
        said->append(some.data(), length);
        std::array part{iovec{some.data(), length}};
        to.Send(part);
    }
    to.Shutdown();
}

/** One socket of the session, and what was said on it. */
struct Line {
    Line(Socket theClient, Socket theServer)
        : client(std::move(theClient)), server(std::move(theServer)) {}
    const Socket client, server;
    std::string byClient, byServer;
    std::thread forth{[this] { Overhear(client, server, &byClient); }};
    std::thread back{[this] { Overhear(server, client, &byServer); }};
};

/** The lines of a session in which all is done that can be, in the order of their opening. */
std::list<Line> Converse(bool acknowledgeWithReply) {
    std::list<Line> lines;
    const auto peer = ndk::SharedRefBase::make<Peer>();
    const auto server = std::make_shared<RpcServer>(
            RpcServer::Settings{.threads = 2, .acknowledgeWithReply = acknowledgeWithReply},
            Ref<AIBinder>::Share(peer->asBinder().get()));
    RpcClientSettings settings;
    settings.acknowledgeWithReply = acknowledgeWithReply;
    settings.dial = [&](Deadline) {
        auto [near, client] = Socket::Pair();
        auto [line, far] = Socket::Pair();
        server->Accept(std::move(far));
        lines.emplace_back(std::move(client), std::move(line));
        return std::move(near);
    };
    const auto session = ConnectRpc(settings);
    if (session == nullptr) std::abort();
    Use(*session);
    session->Terminate();
    session->WaitForNotices();
    session->JoinThreads();
    server->Close();
    server->JoinThreads();
    for (Line& line : lines) {
        line.forth.join();
        line.back.join();
    }
    return lines;
}

/** What the fuzzer's own greeting says: header, init, and a question besides, in front of one more;
 * and header and session id on the second socket. */
constexpr size_t kGreeting = 16 + 8 + 2 * 56;
constexpr size_t kJoining = 16 + 32;

}  // namespace

void AddSessions(const SeedFolder& seeds) {
    for (const bool withReply : {false, true}) {
        const std::list<Line> lines = Converse(withReply);
        const Line &first = lines.front(), &second = *std::next(lines.begin());
        const char kind = withReply ? 1 : 0;
        const std::string name = withReply ? "-with-reply" : "";
        const std::string server{0, kind};
        seeds.Add("session", "client-says" + name, server + first.byClient);
        seeds.Add("session", "client-goes-on" + name,
                  std::string{0, static_cast<char>(kind | 6)} +
                          Piece(second.byClient.substr(kJoining)) +
                          first.byClient.substr(kGreeting));
        seeds.Add("session", "client-calls-twice" + name,
                  std::string{0, static_cast<char>(kind | 2)} +
                          Piece(first.byClient.substr(16, 8) + first.byClient.substr(kGreeting)) +
                          first.byClient.substr(kGreeting));
        seeds.Add("session", "server-says" + name,
                  std::string{1, kind} + Piece(first.byServer) + Piece(second.byServer));
    }
}

}  // namespace zarvo::fuzz
