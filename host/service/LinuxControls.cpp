#include <android/binder_manager.h>

#include <csignal>
#include <string>
#include <thread>

#include <unistd.h>

#include "host/binder/services/PublishedServices.h"
#include "host/binder/services/ThreadPool.h"
#include "host/control/HostControl.h"
#include "host/log/LogFormat.h"
#include "host/log/LogTap.h"
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

/** All priorities, for the library decides itself what is worth a line; each in one piece. */
void LogToStderr(const LogLine& line) {
    const std::string text = FormatLogLine(line, getpid());
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

void BeginHostControls() {
    // Never ended: the library's singletons log while the process exits.
    [[maybe_unused]] static const auto* const tap = new LogTap(&LogToStderr);
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
