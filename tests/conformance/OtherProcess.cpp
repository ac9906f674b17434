#include "tests/conformance/OtherProcess.h"

#include <android/binder_process.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <utility>

#include "tests/conformance/Client.h"

namespace conformance {
namespace {

constexpr char kArrived = '!';

/** Says that the role's end is reached, and waits there to be killed. */
void Arrive() {
    if (write(STDOUT_FILENO, &kArrived, 1) != 1) _exit(EXIT_FAILURE);
    while (true)
        pause();
}

}  // namespace

OtherProcess::OtherProcess(const std::string& role) {
    std::array<int, 2> output{-1, -1};
    if (pipe2(output.data(), O_CLOEXEC) != 0) return;
    mOutput = output[0];
    mPid = fork();
    if (mPid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(output[1], STDOUT_FILENO);
        execl("/proc/self/exe", "aon_conformance_test", "--client", role.c_str(), nullptr);
        _exit(EXIT_FAILURE);
    }
    close(output[1]);
}

OtherProcess::~OtherProcess() {
    Kill();
    if (mOutput >= 0) close(mOutput);
}

bool OtherProcess::Arrives() const {
    const int wait = static_cast<int>(std::chrono::milliseconds(kPatience).count());
    pollfd output{.fd = mOutput, .events = POLLIN, .revents = 0};
    char byte = 0;
    return poll(&output, 1, wait) == 1 && read(mOutput, &byte, 1) == 1 && byte == kArrived;
}

void OtherProcess::Kill() {
    // Not what kill() takes for several processes.
    if (mPid <= 0) return;
    kill(mPid, SIGKILL);
    waitpid(std::exchange(mPid, 0), nullptr, 0);
}

int PlayRole(const std::string& role) {
    ABinderProcess_startThreadPool();
    const auto service = FindService();
    aon::SensorConfigInfo config;
    if (service == nullptr) return EXIT_FAILURE;
    Client client(service);
    if (role == kInsideACallback) client.receiver->SetInState(Arrive);
    if (client.Register(kAllTypes) != kOk) return EXIT_FAILURE;
    if (role == kRegistered) Arrive();
    if (!FirstConfig(Sensors(*service), kAllTypes, &config)) return EXIT_FAILURE;
    if (client.Subscribe(config) != kOk || client.Start(kAllTypes) != kOk) return EXIT_FAILURE;
    if (!client.receiver->AwaitEvent().empty()) Arrive();
    return EXIT_FAILURE;
}

}  // namespace conformance
