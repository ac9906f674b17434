#include "tests/support/Child.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace zarvo::test {

Child::Child(std::vector<std::string> command) {
    std::array<int, 2> output{-1, -1};
    if (pipe2(output.data(), O_CLOEXEC) != 0) return;
    mOutput = output[0];
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (posix_spawn(&mPid, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) {
        mPid = 0;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
}

Child::~Child() {
    if (mPid != 0) {
        Signal(SIGKILL);
        Wait();
    }
    if (mOutput >= 0) close(mOutput);
}

void Child::Signal(int number) const {
    if (mPid != 0) kill(mPid, number);
}

void Child::Stop() const {
    siginfo_t news{};
    Signal(SIGSTOP);
    if (mPid != 0) waitid(P_PID, static_cast<id_t>(mPid), &news, WSTOPPED | WEXITED | WNOWAIT);
}

std::string Child::Line() const {
    std::string line;
    pollfd output{.fd = mOutput, .events = POLLIN, .revents = 0};
    char byte = 0;
    while (poll(&output, 1, kPatienceMs) == 1 && read(mOutput, &byte, 1) == 1 && byte != '\n')
        line += byte;
    return line;
}

void Child::Wait() {
    if (mPid == 0) return;
    const int end = static_cast<int>(syscall(SYS_pidfd_open, mPid, 0));
    pollfd ended{.fd = end, .events = POLLIN, .revents = 0};
    const bool inTime = poll(&ended, 1, kPatienceMs) == 1;
    close(end);
    if (inTime) waitpid(std::exchange(mPid, 0), nullptr, 0);
}

}  // namespace zarvo::test
