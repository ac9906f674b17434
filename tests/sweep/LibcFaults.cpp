#include "tests/sweep/LibcFaults.h"

#include <dlfcn.h>
#include <pthread.h>
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

}  // extern "C"
