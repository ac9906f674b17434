#include "host/ctl/Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <thread>

#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

/** Larger than what any command but the watching ones prints, so that it fails in FinishOutput().
 */
constexpr size_t kBufferSize = 1 << 18;

/** The reason of a failed write; stdio itself forgets it. */
int gError = 0;

/** Waits that long, or for ever if negative. */
bool ReaderLeft(int milliseconds) {
    pollfd output{STDOUT_FILENO, 0, 0};
    int ready = 0;
    do {
        ready = poll(&output, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

bool Flush() {
    if (std::fflush(stdout) == 0) return true;
    gError = errno;
    return false;
}

}  // namespace

void PrepareOutput() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // The other way round than they are used, so that using them fails as it did when closed.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
    std::setvbuf(stdout, nullptr, _IOFBF, kBufferSize);
}

bool WriteLine(const std::string& line) {
    return std::fputs((line + '\n').c_str(), stdout) >= 0 && Flush();
}

int FinishOutput(int status) {
    Flush();
    if (std::ferror(stdout) == 0) return status;
    if (gError == EPIPE || ReaderLeft(0)) return kDone;
    std::fprintf(stderr, "aonctl: cannot write the output%s%s\n", gError == 0 ? "" : ": ",
                 gError == 0 ? "" : std::strerror(gError));
    return kFailed;
}

void WhenReaderLeaves(void (*then)()) {
    // No signal may end in this thread: others wait for them.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread([then] {
        if (ReaderLeft(-1)) then();
    }).detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace zarvo::host::ctl
