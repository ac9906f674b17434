#include "tests/conformance/OtherProcess.h"

#include <android/binder_process.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <future>
#include <utility>

#include "tests/conformance/Client.h"

namespace conformance {
namespace {

constexpr char kArrived = '!';

/** Says that the role's end is reached, and waits there. Whoever started this reads no more than
 * one, and ends it. */
void Arrive() {
    char byte = kArrived;
    if (write(STDOUT_FILENO, &byte, 1) != 1) _exit(EXIT_FAILURE);
    while (read(STDIN_FILENO, &byte, 1) > 0) {
    }
    _exit(EXIT_FAILURE);
}

}  // namespace

OtherProcess::OtherProcess(std::string role) {
    std::array<int, 2> output{-1, -1};
    std::array<int, 2> life{-1, -1};
    if (pipe2(output.data(), O_CLOEXEC) != 0) return;
    mOutput = output[0];
    if (pipe2(life.data(), O_CLOEXEC) == 0) {
        mLife = life[1];
        std::string program = "/proc/self/exe";
        std::string option = "--client";
        const std::array<char*, 4> arguments{program.data(), option.data(), role.data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, life[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        if (posix_spawn(&mPid, program.c_str(), &actions, nullptr, arguments.data(), environ) != 0)
            mPid = 0;
        posix_spawn_file_actions_destroy(&actions);
        close(life[0]);
    }
    close(output[1]);
}

OtherProcess::~OtherProcess() {
    Kill();
    if (mOutput >= 0) close(mOutput);
    if (mLife >= 0) close(mLife);
}

bool OtherProcess::Arrives() const {
    const int wait = static_cast<int>(std::chrono::milliseconds(kPatience).count());
    pollfd output{.fd = mOutput, .events = POLLIN, .revents = 0};
    char byte = 0;
    return poll(&output, 1, wait) == 1 && read(mOutput, &byte, 1) == 1 && byte == kArrived;
}

void OtherProcess::Kill() {
    if (mPid == 0) return;
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
