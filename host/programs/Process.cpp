#include "host/programs/Process.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <utility>

namespace zarvo::host {
namespace {

constexpr int kCannotRun = 127;

/** A terminal's signals go to the whole group: what they mean is the parent's to decide. */
void LeaveTerminalToParent() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    sigprocmask(SIG_SETMASK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
}

/** Runs in the child. */
[[noreturn]] void Become(const std::vector<char*>& command, int socket, Process::Errors errors,
                         pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // It may have died before that.
    if (getppid() != parent) _exit(kCannotRun);
    LeaveTerminalToParent();
    dup2(socket, STDIN_FILENO);
    dup2(socket, STDOUT_FILENO);
    if (errors == Process::Errors::kTaken) dup2(socket, STDERR_FILENO);
    execv(command.front(), command.data());
    dprintf(STDERR_FILENO, "cannot run %s: %s\n", command.front(), strerror(errno));
    _exit(kCannotRun);
}

}  // namespace

Process::Process(std::string name, const std::vector<std::string>& command, Errors errors,
                 Group group)
    : mName(std::move(name)) {
    std::array<int, 2> sockets{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) return;
    mSocket = FileDescriptor(sockets[0]);
    const FileDescriptor childs(sockets[1]);
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const pid_t parent = getpid();
    mPid = fork();
    if (mPid == 0) {
        if (group == Group::kOwn) setpgid(0, 0);
        Become(words, childs.Get(), errors, parent);
    }
}

std::string Process::Title() const {
    return mName + " (pid " + std::to_string(mPid) + ")";
}

void Process::Send(std::string_view line) const {
    const std::string bytes = std::string(line) + '\n';
    send(mSocket.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

void Process::CloseInput() const {
    shutdown(mSocket.Get(), SHUT_WR);
}

void Process::Receive() {
    std::array<char, 4096> part{};
    while (mSocket.IsOpen()) {
        const ssize_t length = recv(mSocket.Get(), part.data(), part.size(), MSG_DONTWAIT);
        if (length > 0) {
            mLines.Append({part.data(), static_cast<size_t>(length)});
        } else if (length < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        } else {
            mSocket = FileDescriptor();
        }
    }
}

void Process::Signal(int signal) const {
    // Once it is reaped, its number may be another's.
    if (mPid > 0 && !HasEnded()) kill(mPid, signal);
}

void Process::Reap() {
    int status = 0;
    if (mPid > 0 && !HasEnded() && waitpid(mPid, &status, WNOHANG) == mPid) mStatus = status;
}

void Process::Kill() {
    if (mPid <= 0 || HasEnded()) return;
    Signal(SIGKILL);
    int status = 0;
    if (waitpid(mPid, &status, 0) == mPid) mStatus = status;
}

bool Process::HasExited(int code) const {
    return mStatus && WIFEXITED(*mStatus) && WEXITSTATUS(*mStatus) == code;
}

bool Process::WasKilled(int signal) const {
    return mStatus && WIFSIGNALED(*mStatus) && WTERMSIG(*mStatus) == signal;
}

std::string Process::EndText() const {
    if (!mStatus) return "runs";
    if (WIFEXITED(*mStatus)) return "exit status " + std::to_string(WEXITSTATUS(*mStatus));
    const int signal = WTERMSIG(*mStatus);
    return "killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace zarvo::host
