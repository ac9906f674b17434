#include "host/binder/rpc/Turn.h"

#include <atomic>

#include "host/binder/rpc/CallContext.h"

namespace zarvo::host {

namespace {

std::atomic<bool> gOneAtATime{false};
std::mutex gTurn;

}  // namespace

Turn::Turn() {
    if (gOneAtATime && CallContext::Depth() == 0) mLock = std::unique_lock(gTurn);
}

void Turn::SetOneAtATime(bool oneAtATime) {
    gOneAtATime = oneAtATime;
}

}  // namespace zarvo::host
