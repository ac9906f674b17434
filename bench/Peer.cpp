#include "bench/Peer.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "bench/Fail.h"

namespace zarvo::bench {

namespace {

constexpr int kCannotRun = 127;

/** Room for the largest event, as the service's own sockets have: a floor that waits more often
 * than the service would not be one. */
constexpr int kMostUnreceived = 512 << 10;  // the system takes it twice

/** Takes the first `sent` bytes off. */
std::span<iovec> Skip(std::span<iovec> parts, size_t sent) {
    while (!parts.empty() && sent >= parts.front().iov_len) {
        sent -= parts.front().iov_len;
        parts = parts.subspan(1);
    }
    if (!parts.empty()) {
        parts.front().iov_base = static_cast<char*>(parts.front().iov_base) + sent;
        parts.front().iov_len -= sent;
    }
    return parts;
}

/** By its name, for a profiler in whose process this one runs. */
std::string ProgramPath() {
    return std::filesystem::read_symlink("/proc/self/exe");
}

/** Runs in the child, where another thread may have held any lock. */
[[noreturn]] void Become(char* const* command, int socket, int errors, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(kCannotRun);
    dup2(socket, STDIN_FILENO);
    dup2(errors, STDERR_FILENO);
    execv(command[0], command);
    _exit(kCannotRun);
}

}  // namespace

bool SendAll(int socket, std::span<iovec> parts) {
    for (parts = Skip(parts, 0); !parts.empty();) {
        msghdr message{};
        message.msg_iov = parts.data();
        message.msg_iovlen = parts.size();
        const ssize_t sent = sendmsg(socket, &message, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return false;
        parts = Skip(parts, static_cast<size_t>(sent));
    }
    return true;
}

bool ReceiveAll(int socket, void* to, size_t length) {
    auto* place = static_cast<char*>(to);
    while (length > 0) {
        const ssize_t received = recv(socket, place, length, MSG_WAITALL);
        if (received < 0 && errno == EINTR) continue;
        if (received <= 0) return false;
        place += received;
        length -= static_cast<size_t>(received);
    }
    return true;
}

std::string ProgramFolder() {
    return std::filesystem::path(ProgramPath()).parent_path();
}

Peer::Peer(const std::string& role) : Peer({ProgramPath(), "--role", role}, STDERR_FILENO) {}

Peer::Peer(const std::vector<std::string>& command, int errors) {
    std::array<int, 2> sockets{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        Fail("cannot make sockets");
    }
    for (const int socket : sockets)
        setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &kMostUnreceived, sizeof(kMostUnreceived));
    mSocket = host::FileDescriptor(sockets[0]);
    const host::FileDescriptor childs(sockets[1]);
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const pid_t parent = getpid();
    mPid = fork();
    if (mPid == 0) Become(words.data(), childs.Get(), errors, parent);
    if (mPid < 0) Fail("cannot start " + command.front());
}

Peer::~Peer() {
    kill(mPid, SIGKILL);
    while (waitpid(mPid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace zarvo::bench
