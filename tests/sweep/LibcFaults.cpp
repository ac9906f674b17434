#include "tests/sweep/LibcFaults.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

// What stands here is found before the system's calls of that name. A sanitizer that watches such a
// call has its own version of it under these names, and is to be called in the system's place.
extern "C" {
[[gnu::weak]] decltype(pthread_create) __interceptor_pthread_create;
[[gnu::weak]] decltype(socketpair) __interceptor_socketpair;
[[gnu::weak]] decltype(sendmsg) __interceptor_sendmsg;
[[gnu::weak]] decltype(recv) __interceptor_recv;
[[gnu::weak]] decltype(fopen) __interceptor_fopen;
[[gnu::weak]] decltype(socket) __interceptor_socket;
[[gnu::weak]] decltype(bind) __interceptor_bind;
[[gnu::weak]] decltype(accept4) __interceptor_accept4;
[[gnu::weak]] decltype(connect) __interceptor_connect;
[[gnu::weak]] decltype(flock) __interceptor_flock;
[[gnu::weak]] decltype(rename) __interceptor_rename;
}

namespace zarvo::test {
namespace {

template <typename Function>
Function* Real(const char* name, Function* watched) {
    return watched != nullptr ? watched : reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool FailsWith(host::FaultPoint& point, int error) {
    if (!point.ShouldFail()) return false;
    errno = error;
    return true;
}

LibcFaults& Faults() {
    return LibcFaults::Instance();
}

}  // namespace

LibcFaults& LibcFaults::Instance() {
    // Threads may be made after statics are gone.
    static auto* const faults = new LibcFaults();
    return *faults;
}

}  // namespace zarvo::test

using zarvo::test::FailsWith;
using zarvo::test::Faults;
using zarvo::test::Real;

extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                   void* argument) {
    static const auto real = Real("pthread_create", __interceptor_pthread_create);
    if (Faults().thread.ShouldFail()) return EAGAIN;
    return real(thread, attributes, run, argument);
}

int socketpair(int domain, int type, int protocol, int* sockets) {
    static const auto real = Real("socketpair", __interceptor_socketpair);
    if (FailsWith(Faults().socketPair, EMFILE)) return -1;
    return real(domain, type, protocol, sockets);
}

ssize_t sendmsg(int socket, const msghdr* message, int flags) {
    static const auto real = Real("sendmsg", __interceptor_sendmsg);
    if (FailsWith(Faults().sendBroken, ECONNRESET)) return -1;
    if (FailsWith(Faults().sendInterrupted, EINTR)) return -1;
    if (FailsWith(Faults().sendFull, EAGAIN)) return -1;
    if (!Faults().sendShort.ShouldFail()) return real(socket, message, flags);
    iovec first{message->msg_iov[0].iov_base, 1};
    msghdr little = *message;
    little.msg_iov = &first;
    little.msg_iovlen = 1;
    return real(socket, &little, flags);
}

ssize_t recv(int socket, void* to, size_t length, int flags) {
    static const auto real = Real("recv", __interceptor_recv);
    if (FailsWith(Faults().receiveBroken, ECONNRESET)) return -1;
    if (FailsWith(Faults().receiveInterrupted, EINTR)) return -1;
    return real(socket, to, length, flags);
}

FILE* fopen(const char* path, const char* mode) {
    static const auto real = Real("fopen", __interceptor_fopen);
    if (!std::string_view(path).starts_with("/data/aon/")) return real(path, mode);
    if (FailsWith(Faults().dumpOpen, EACCES)) return nullptr;
    return real(Faults().dumpWrite.ShouldFail() ? "/dev/full" : "/dev/null", mode);
}

int socket(int domain, int type, int protocol) noexcept {
    static const auto real = Real("socket", __interceptor_socket);
    return FailsWith(Faults().socket, EMFILE) ? -1 : real(domain, type, protocol);
}

int bind(int socket, const sockaddr* address, socklen_t length) noexcept {
    static const auto real = Real("bind", __interceptor_bind);
    return FailsWith(Faults().bind, ENOSPC) ? -1 : real(socket, address, length);
}

int accept4(int socket, sockaddr* address, socklen_t* length, int flags) {
    static const auto real = Real("accept4", __interceptor_accept4);
    return FailsWith(Faults().accept, EMFILE) ? -1 : real(socket, address, length, flags);
}

int connect(int socket, const sockaddr* address, socklen_t length) {
    static const auto real = Real("connect", __interceptor_connect);
    return FailsWith(Faults().connect, ECONNREFUSED) ? -1 : real(socket, address, length);
}

int flock(int file, int operation) noexcept {
    static const auto real = Real("flock", __interceptor_flock);
    return FailsWith(Faults().lock, EINTR) ? -1 : real(file, operation);
}

int rename(const char* from, const char* to) noexcept {
    static const auto real = Real("rename", __interceptor_rename);
    return FailsWith(Faults().rename, EROFS) ? -1 : real(from, to);
}

}  // extern "C"
