#include <android/binder_manager.h>

#include <csignal>
#include <thread>

#include "host/binder/services/PublishedServices.h"
#include "host/binder/services/ThreadPool.h"
#include "host/control/HostControl.h"
#include "host/service/HostControls.h"
#include "host/stream/SimulatorControl.h"
#include "platform/Log.h"

namespace zarvo::host {

namespace {

sigset_t EndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

}  // namespace

void BeginHostControls() {
    const sigset_t signals = EndSignals();
    // All threads inherit this, so the signals come to the one that waits for them.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        ThreadPool::Instance().Stop();
    }).detach();
}

bool PublishHostControls(AIBinder* service) {
    const auto control = ndk::SharedRefBase::make<HostControl>(ndk::SpAIBinder(service));
    AIBinder_incStrong(service);
    const auto result =
            AServiceManager_addService(control->asBinder().get(), HostControl::INSTANCE);
    if (result != EX_NONE) AON_LOGE("AONService", "cannot publish the host's controls");
    return result == EX_NONE;
}

void EndHostControls() {
    // Clients first, so that nothing is asked of what ends; then the stream's threads.
    PublishedServices::Instance().WithdrawAll();
    SimulatorControl::Instance().Shutdown();
}

}  // namespace zarvo::host
