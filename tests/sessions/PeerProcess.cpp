#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "host/binder/rpc/Socket.h"
#include "tests/binder/Peer.h"

namespace {

using zarvo::host::Socket;

/** Connects a thousand times and says nothing; prints what the last of them was told. */
void Crowd(const std::string& path) {
    std::vector<Socket> crowd;
    do {
        crowd.push_back(Socket::Connect(path));
    } while (crowd.back().IsOpen() && crowd.size() < 1000);
    uint8_t news = 0;
    std::puts(crowd.back().IsOpen() && crowd.back().Receive(&news, 1) == 0 ? "refused" : "taken");
    std::fflush(stdout);
    pause();
}

}  // namespace

/** Serves a peer by the name given, with one thread; prints what came of publishing it. The peer
 * calls each visitor back, now and once it has gone. */
int main(int argc, char** argv) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc > 2) Crowd(argv[1]);
    const auto peer = tests::SharedRefBase::make<tests::Peer>();
    tests::Peer::Visitor last;
    peer->onVisit = [&](const auto& visitor, int32_t number, std::string* text) {
        *text = std::to_string(number);
        last = visitor;
        return visitor == nullptr ? ndk::ScopedAStatus::ok()
                                  : visitor->visit(nullptr, number, text);
    };
    peer->onTell = [&](int32_t number) {
        if (const auto gone = std::exchange(last, nullptr)) gone->tell(number);
    };
    const int result = AServiceManager_addService(peer->asBinder().get(), argv[1]);
    std::printf("%d\n", result);
    std::fflush(stdout);
    if (result != EX_NONE) return 1;
    ABinderProcess_joinThreadPool();
}
