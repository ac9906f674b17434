#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "host/ctl/Client.h"
#include "host/ctl/Command.h"
#include "host/recording/RecordingWriter.h"

namespace zarvo::host::ctl {
namespace {

/** A file that is written; says on stderr what goes wrong, once. Owns its descriptor. */
class OutputFile {
  public:
    /** `-` is the standard output. */
    explicit OutputFile(std::string name) : mName(std::move(name)) {}
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() {
        if (mFd >= 0) close(mFd);
    }

    bool Open(bool overwrite) {
        const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (overwrite ? O_TRUNC : O_EXCL);
        // Pictures of people: nobody else reads them.
        constexpr mode_t kMode = 0600;
        mFd = mName == "-" ? dup(STDOUT_FILENO) : open(mName.c_str(), flags, kMode);
        if (mFd >= 0) return true;
        const bool isThere = errno == EEXIST;
        return Fail(isThere ? "it is there already; --force writes over it" : std::strerror(errno));
    }
    bool Write(std::span<const uint8_t> bytes) {
        while (!bytes.empty() && mFd >= 0) {
            const ssize_t length = write(mFd, bytes.data(), bytes.size());
            if (length >= 0) bytes = bytes.subspan(static_cast<size_t>(length));
            if (length < 0 && errno != EINTR) return Fail(std::strerror(errno));
        }
        return mFd >= 0;
    }
    bool Close() {
        const int result = close(std::exchange(mFd, -1));
        return result == 0 || Fail(std::strerror(errno));
    }
    const std::string& Name() const { return mName; }

  private:
    /** Nothing is written any more. */
    bool Fail(const char* what) {
        std::fprintf(stderr, "aonctl: cannot write %s: %s\n", mName.c_str(), what);
        if (mFd >= 0) close(std::exchange(mFd, -1));
        return false;
    }

    const std::string mName;
    int mFd = -1;
};

/** Writes what the client gets to a file, and at the end a line about it. */
class Recorder : public ClientSink {
  public:
    Recorder(std::string name, bool overwrite)
        : mFile(std::move(name)),
          mOverwrite(overwrite),
          mWriter([this](std::span<const uint8_t> bytes) { return mFile.Write(bytes); }) {}

    bool OnConfig(const SensorConfigInfo& config) override {
        // Not earlier: without a service there is nothing to make a file for.
        return mFile.Open(mOverwrite) && mWriter.Begin(config);
    }
    bool OnEvent(Time arrival, const AONCallBackInfo& info) override {
        ++mEvents;
        return mWriter.Write(arrival - mBeginning, info);
    }
    bool OnState(Time arrival, const AONSensorStateInfo& info) override {
        ++mStates;
        return mWriter.Write(arrival - mBeginning, info);
    }
    bool OnEnd(uint64_t eventsMissed) override {
        const auto now = std::chrono::steady_clock::now();
        if (!mWriter.End(now - mBeginning, {eventsMissed}) || !mFile.Close()) return false;
        std::fprintf(stderr, "%" PRIu64 " events, %" PRIu64 " states, %.1f MB to %s\n", mEvents,
                     mStates, static_cast<double>(mWriter.Size()) / 1e6, mFile.Name().c_str());
        if (eventsMissed == 0) return true;
        std::fprintf(stderr, "%" PRIu64 " more events were missed: writing was too slow\n",
                     eventsMissed);
        return true;
    }

  private:
    OutputFile mFile;
    const bool mOverwrite;
    recording::RecordingWriter mWriter;
    const Time mBeginning = std::chrono::steady_clock::now();
    uint64_t mEvents = 0;
    uint64_t mStates = 0;
};

}  // namespace

int RunRecord(Arguments& arguments) {
    const std::string name(arguments.Words().front());
    if (name == "-" && isatty(STDOUT_FILENO) == 1) {
        arguments.SetError("a recording is nothing for a terminal");
        return kMisused;
    }
    Recorder recorder(name, arguments.Has("--force"));
    return RunClient(arguments, recorder);
}

}  // namespace zarvo::host::ctl
