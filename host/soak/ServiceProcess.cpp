#include "host/soak/ServiceProcess.h"

#include <android/binder_manager.h>

#include <climits>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/soak/Wait.h"

namespace zarvo::host::soak {
namespace {

/** Quiet is who holds the same at so many looks in a row. */
constexpr int kQuietLooks = 20;

/** Threads come and go while they are counted. */
long Count(const std::string& directory) {
    std::error_code error;
    long count = 0;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        ++count;
    }
    return count;
}

/** Null if nobody serves it. */
template <typename Interface>
std::shared_ptr<Interface> Find(const std::string& name) {
    return Interface::fromBinder(ndk::SpAIBinder(AServiceManager_checkService(name.c_str())));
}

}  // namespace

Holdings Holdings::Of(pid_t process) {
    const std::string directory = "/proc/" + std::to_string(process);
    Holdings holdings{Count(directory + "/fd"), Count(directory + "/task"), 0};
    std::ifstream status(directory + "/status");
    std::string word;
    while (status >> word)
        if (word == "RssAnon:") status >> holdings.memory;
    return holdings;
}

std::string PathBesideThis(const std::string& program) {
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
    return (own.parent_path() / program).string();
}

int64_t NumberIn(const std::string& dump, const std::string& key) {
    const std::string name = "\"" + key + "\":";
    const size_t at = dump.find(name);
    return at == std::string::npos ? -1 : std::strtoll(&dump[at + name.size()], nullptr, 10);
}

ServiceProcess::ServiceProcess(const std::vector<std::string>& options)
    : mProcess(
              "the service",
              [&] {
                  std::vector<std::string> command{
                          PathBesideThis("vendor.zarvo.hardware.camera.aon-service")};
                  command.insert(command.end(), options.begin(), options.end());
                  return command;
              }(),
              Process::Errors::kInherited, Process::Group::kOwn) {
    Await([this] {
        mService = Find<IAONService>(std::string(IAONService::descriptor) + "/default");
        mControls = Find<IHostControl>(IHostControl::INSTANCE);
        return !Runs() || (mService != nullptr && mControls != nullptr);
    });
    if (Serves()) AwaitSettled();
}

ServiceProcess::~ServiceProcess() {
    mProcess.Kill();
}

bool ServiceProcess::Runs() {
    mProcess.Reap();
    return mProcess.Pid() > 0 && !mProcess.HasEnded();
}

bool ServiceProcess::Serves() {
    return Runs() && mService != nullptr && mControls != nullptr;
}

bool ServiceProcess::IsStreaming() const {
    bool streaming = false;
    mControls->isStreaming(&streaming);
    return streaming;
}

bool ServiceProcess::AwaitReleased() const {
    return Await([this] { return !IsStreaming(); });
}

std::string ServiceProcess::Dump() const {
    std::string text;
    mControls->dumpService({"--json"}, &text);
    return text;
}

Holdings ServiceProcess::AwaitSettled() const {
    return AwaitWithin({LONG_MAX, LONG_MAX, LONG_MAX});
}

Holdings ServiceProcess::AwaitWithin(const Holdings& most) const {
    Holdings last = Now();
    int quiet = 0;
    Await([&] {
        const Holdings now = Now();
        const bool same = now.descriptors == last.descriptors && now.threads == last.threads;
        const bool within = now.descriptors <= most.descriptors && now.threads <= most.threads;
        quiet = same && within ? quiet + 1 : 0;
        last = now;
        return quiet == kQuietLooks;
    });
    return last;
}

std::string ServiceProcess::End() {
    mProcess.Signal(SIGTERM);
    Await([this] { return !Runs(); });
    return mProcess.HasExited(EXIT_SUCCESS) ? "" : "the service ended so: " + mProcess.EndText();
}

}  // namespace zarvo::host::soak
