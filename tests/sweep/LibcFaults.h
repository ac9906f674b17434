#pragma once

#include "host/common/FaultPoint.h"

namespace zarvo::test {

/** Failures to order of the system's calls, for the whole process that links this. Any thread. */
struct LibcFaults {
    static LibcFaults& Instance();

    /** pthread_create: EAGAIN. */
    host::FaultPoint thread;
    /** socketpair: EMFILE. */
    host::FaultPoint socketPair;
    /** sendmsg: ECONNRESET, EINTR, EAGAIN, or only the first byte. */
    host::FaultPoint sendBroken, sendInterrupted, sendFull, sendShort;
    /** recv: ECONNRESET, EINTR. */
    host::FaultPoint receiveBroken, receiveInterrupted;
    /** fopen of a dump: EACCES, or a file that takes nothing. All others are dropped. */
    host::FaultPoint dumpOpen, dumpWrite;
    /** What publishes and finds a service: EMFILE, ENOSPC, EMFILE, ECONNREFUSED, EINTR, EROFS. */
    host::FaultPoint socket, bind, accept, connect, lock, rename;
};

}  // namespace zarvo::test
