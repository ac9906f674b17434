#include <android/binder_manager.h>
#include <android/binder_process.h>

#include <cstdio>
#include <utility>

#include "tests/binder/Peer.h"

/** Serves a peer by the name given, with one thread; prints what came of publishing it. The peer
 * calls each visitor back, now and once it has gone. */
int main(int argc, char** argv) {
    if (argc != 2) return 2;
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
