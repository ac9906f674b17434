#include <android/binder_manager.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include <unistd.h>

#include "host/binder/services/PublishedServices.h"
#include "host/binder/services/ThreadPool.h"
#include "host/control/HostControl.h"
#include "host/log/LogFormat.h"
#include "host/log/LogTap.h"
#include "host/replay/RecordedSensor.h"
#include "host/replay/Replay.h"
#include "host/service/CommandLine.h"
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

/** The simulated sensors as they are. */
std::vector<SensorDescription> Sensors() {
    IAOVStream& stream = *IAOVStream::createInstance();
    std::vector<SensorDescription> sensors;
    for (const int id : stream.getSensorIdList()) {
        SensorDescription& sensor = sensors.emplace_back();
        sensor.id = id;
        stream.getSensorMode(id, &sensor.mode);
        sensor.sizes = stream.getSensorInfo(id);
    }
    return sensors;
}

/** Lets the stream play the recording; false, and said, if it cannot. */
bool BeginReplay(const std::string& path, bool again) {
    std::string error;
    auto bytes = recording::OpenRecording(path, error);
    const auto replay = bytes == nullptr ? nullptr : Replay::Make(std::move(bytes), again, error);
    if (replay == nullptr) {
        std::fprintf(stderr, "vendor.zarvo.hardware.camera.aon-service: cannot play %s: %s\n",
                     path.c_str(), error.c_str());
        return false;
    }
    auto sensors = Sensors();
    OfferConfig(replay->Config(), sensors);
    SimulatorControl::Instance().SetSensors(std::move(sensors));
    SimulatorControl::Instance().SetReplay(replay);
    return true;
}

void WatchEndSignals() {
    const sigset_t signals = EndSignals();
    // All threads inherit this, so the signals come to the one that waits for them.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        ThreadPool::Instance().Stop();
    }).detach();
}

}  // namespace

std::optional<int> BeginHostControls(int argc, char** argv) {
    const ServiceOptions options = ParseCommandLine(argc, argv);
    if (options.exitStatus) return options.exitStatus;
    // Never ended: the library's singletons log while the process exits.
    [[maybe_unused]] static const auto* const tap = new LogTap(&LogToStderr);
    // Before the signals are held back: a long recording takes a while to check.
    if (!options.replay.empty() && !BeginReplay(options.replay, options.replayLoop)) {
        return EXIT_FAILURE;
    }
    WatchEndSignals();
    return std::nullopt;
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
