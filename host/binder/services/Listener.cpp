#include "host/binder/services/Listener.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/binder/BinderLog.h"
#include "host/binder/rpc/SocketAddress.h"

namespace zarvo::host {

namespace {

constexpr int kBacklog = 50;
constexpr int kMillisecondsWhenFull = 100;

/** Whether a process listens there; also one that is stopped, with more callers than can wait. */
bool IsServed(const SocketAddress& address) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // Who has no descriptor to ask with has none to listen with.
    if (!socket.IsOpen()) return false;
    if (connect(socket.Get(), address.Get(), address.Size()) == 0) return true;
    return errno != ECONNREFUSED && errno != ENOENT;
}

FileDescriptor Listen(const SocketAddress& address) {
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.IsOpen()) return socket;
    if (bind(socket.Get(), address.Get(), address.Size()) != 0) return FileDescriptor();
    return listen(socket.Get(), kBacklog) == 0 ? std::move(socket) : FileDescriptor();
}

/** For the reason that errno tells. */
binder_exception_t CannotListen(const std::string& path) {
    BINDER_LOGE("cannot listen at %s: %s", path.c_str(), strerror(errno));
    return EX_ILLEGAL_STATE;
}

/** Waits a while for descriptors or memory; false if the socket is shut down. */
bool PauseUntilShutDown(int socket) {
    pollfd waiting{.fd = socket, .events = 0, .revents = 0};
    return poll(&waiting, 1, kMillisecondsWhenFull) <= 0;
}

/** Accepts until the socket is shut down. */
void AcceptAll(int socket, const std::shared_ptr<RpcServer>& server) {
    while (true) {
        const int accepted = accept4(socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (accepted >= 0) {
            server->Accept(Socket(accepted));
        } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            // Whoever waits keeps waiting; trying at once would only burn the processor.
            if (!PauseUntilShutDown(socket)) return;
        } else if (errno != EINTR && errno != ECONNABORTED) {
            return;
        }
    }
}

}  // namespace

binder_exception_t Listener::Open(const RuntimeDirectory& directory, const std::string& instance,
                                  std::shared_ptr<RpcServer> server, bool isServing,
                                  const Listener* replaced, std::unique_ptr<Listener>* listener) {
    const std::string path = directory.SocketPath(instance);
    const std::string temporary = directory.TemporaryPath(instance);
    const auto address = SocketAddress::Of(path);
    const auto temporaryAddress = SocketAddress::Of(temporary);
    if (!address || !temporaryAddress) {
        BINDER_LOGE("the path of %s is too long for a socket: %s", instance.c_str(), path.c_str());
        return EX_ILLEGAL_STATE;
    }
    const FileDescriptor lock = directory.Lock();
    if (!lock.IsOpen()) return CannotListen(path);
    if ((replaced == nullptr || !replaced->IsAt(path)) && IsServed(*address)) {
        BINDER_LOGE("another process serves %s", instance.c_str());
        return EX_ILLEGAL_STATE;
    }
    // Bound beside its place: where it appears, it can be connected to.
    unlink(temporary.c_str());
    FileDescriptor socket = Listen(*temporaryAddress);
    if (!socket.IsOpen()) {
        const auto result = CannotListen(path);
        unlink(temporary.c_str());
        return result;
    }
    std::unique_ptr<Listener> opened(new Listener(std::move(socket), temporary, std::move(server)));
    // The name comes last: whoever finds it is served.
    if (isServing && !opened->Start()) return EX_ILLEGAL_STATE;
    if (!opened->MoveTo(path)) return CannotListen(path);
    *listener = std::move(opened);
    return EX_NONE;
}

Listener::Listener(FileDescriptor socket, std::string path, std::shared_ptr<RpcServer> server)
    : mSocket(std::move(socket)), mPath(std::move(path)), mServer(std::move(server)) {
    struct stat file {};
    if (lstat(mPath.c_str(), &file) == 0) mFile = file.st_ino;
}

bool Listener::MoveTo(const std::string& path) {
    if (rename(mPath.c_str(), path.c_str()) != 0) return false;
    mPath = path;
    return true;
}

Listener::~Listener() {
    RemoveFile();
    shutdown(mSocket.Get(), SHUT_RDWR);
    if (mThread.joinable()) mThread.join();
    mServer->Close();
    mServer->JoinThreads();
}

bool Listener::Start() {
    if (mThread.joinable()) return true;
    try {
        mThread = std::thread([fd = mSocket.Get(), server = mServer] { AcceptAll(fd, server); });
    } catch (const std::system_error& error) {
        BINDER_LOGE("cannot serve %s: %s", mPath.c_str(), error.what());
        return false;
    }
    return true;
}

void Listener::RemoveFile() {
    if (IsAt(mPath)) unlink(mPath.c_str());
}

bool Listener::IsAt(const std::string& path) const {
    struct stat file {};
    return path == mPath && lstat(mPath.c_str(), &file) == 0 && file.st_ino == mFile;
}

}  // namespace zarvo::host
