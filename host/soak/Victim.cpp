#include "host/soak/Victim.h"

#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "host/soak/Client.h"
#include "host/soak/ServiceProcess.h"

namespace zarvo::host::soak {
namespace {

constexpr KillState kStates[] = {
        {"registered", "kills: registered"}, {"subscribed", "kills: subscribed"},
        {"started", "kills: started"},       {"callback", "kills: inside a callback"},
        {"call", "kills: inside a call"},    {"stopped", "kills: stopped by SIGSTOP"},
};

void SayThere() {
    std::puts("there");
    std::fflush(stdout);
}

[[noreturn]] void StayForEver() {
    while (true)
        pause();
}

/** Never returns from an event. */
class Hanging : public Client {
  public:
    Hanging() : Client({AONSensorStateInfo::SENSOR_STATE_STARTED}) {}

    ndk::ScopedAStatus onAONEvent(int64_t, const AONCallBackInfo&) override {
        SayThere();
        StayForEver();
    }
};

/** Ends the process, and says why, if the call was refused. */
void Must(const char* call, const ndk::ScopedAStatus& status) {
    if (status.isOk()) return;
    std::printf("%s: %s\n", call, status.getDescription().c_str());
    std::exit(EXIT_FAILURE);
}

/** Comes to a state: stays there for ever if it is the one. */
void Reach(std::string_view reached, std::string_view wanted) {
    if (reached != wanted) return;
    SayThere();
    StayForEver();
}

[[noreturn]] void CallForEver(IAONService& service, int64_t handle) {
    SayThere();
    while (true) {
        std::vector<aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo> sensors;
        Must("list", service.getAonSensorInfoList(&sensors));
        // Nothing that would harm the next client, which may have the handle by then.
        Must("start", service.startService(handle, kTypes));
    }
}

}  // namespace

std::span<const KillState> AllKillStates() {
    return kStates;
}

int RunVictim(std::string_view state) {
    ABinderProcess_startThreadPool();
    const std::string name = std::string(IAONService::descriptor) + "/default";
    const auto service =
            IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_checkService(name.c_str())));
    if (service == nullptr) {
        std::puts("found no service");
        return EXIT_FAILURE;
    }
    const auto callback = state == "callback" ? ndk::SharedRefBase::make<Hanging>()
                                              : ndk::SharedRefBase::make<Client>(std::vector<int>{
                                                        AONSensorStateInfo::SENSOR_STATE_STARTED});
    int64_t handle = 0;
    Must("register", service->registerClient(callback, kTypes, &handle));
    Reach("registered", state);
    Must("subscribe", service->subscribeSensor(handle, Config()));
    Reach("subscribed", state);
    Must("start", service->startService(handle, kTypes));
    Reach("started", state);
    if (state == "call") CallForEver(*service, handle);
    if (state == "stopped" && callback->AwaitEvents(1)) Reach("stopped", state);
    StayForEver();
}

Victim::Victim(std::string_view state)
    : mProcess("a client", {PathBesideThis("aon-soak"), "--victim", std::string(state)},
               Process::Errors::kInherited, Process::Group::kOwn) {}

Victim::~Victim() {
    mProcess.Kill();
}

std::string Victim::AwaitThere() {
    constexpr int kPatienceMs = static_cast<int>(std::chrono::milliseconds(kPatience).count());
    while (mProcess.Output() >= 0) {
        pollfd output{.fd = mProcess.Output(), .events = POLLIN, .revents = 0};
        const int ready = poll(&output, 1, kPatienceMs);
        // It is waited for also when the program is to end.
        if (ready < 0 && errno == EINTR) continue;
        if (ready != 1) return "it does not come that far";
        mProcess.Receive();
        if (const auto line = mProcess.NextLine()) return *line == "there" ? "" : *line;
    }
    mProcess.Kill();
    return "it ended too early: " + mProcess.EndText();
}

void Victim::Stop() const {
    siginfo_t news{};
    mProcess.Signal(SIGSTOP);
    if (mProcess.Pid() > 0) {
        waitid(P_PID, static_cast<id_t>(mProcess.Pid()), &news, WSTOPPED | WEXITED | WNOWAIT);
    }
}

}  // namespace zarvo::host::soak
