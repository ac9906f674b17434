#include "tests/programs/ServiceProcess.h"

#include <android/binder_auto_utils.h>
#include <android/binder_manager.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace zarvo::test {
namespace {

/** Threads come and go while they are counted. */
ptrdiff_t Count(const std::string& directory) {
    std::error_code error;
    ptrdiff_t count = 0;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        ++count;
    }
    return count;
}

constexpr int kPollMs = 5;
/** Idle is who does not change for that many polls. */
constexpr int kIdlePolls = 40;

template <typename Condition>
Holdings Await(const Child& process, Condition condition) {
    Holdings now = Holdings::Of(process.Pid());
    for (int waited = 0; !condition(now) && waited < kPatienceMs; waited += kPollMs) {
        poll(nullptr, 0, kPollMs);
        now = Holdings::Of(process.Pid());
    }
    return now;
}

}  // namespace

Holdings Holdings::Of(pid_t process) {
    const std::string directory = "/proc/" + std::to_string(process);
    return {Count(directory + "/fd"), Count(directory + "/task")};
}

void PrintTo(const Holdings& holdings, std::ostream* out) {
    *out << holdings.descriptors << " descriptors, " << holdings.threads << " threads";
}

long ResidentKiB(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::string word;
    long kib = 0;
    while (status >> word)
        if (word == "VmRSS:" && status >> kib) return kib;
    return 0;
}

ServiceProcess::ServiceProcess() {
    char path[] = "/tmp/aon-test-XXXXXX";
    directory = mkdtemp(path);
    setenv("AON_RUNTIME_DIR", path, 1);
}

ServiceProcess::~ServiceProcess() {
    if (HasFailure()) std::fprintf(stderr, "the service's log:\n%s", Log().c_str());
    std::filesystem::remove_all(directory);
}

std::unique_ptr<Child> ServiceProcess::Start() const {
    return std::make_unique<Child>(std::vector<std::string>{SERVICE_PROGRAM}, directory + "/log");
}

void ServiceProcess::AwaitIdle(const Child& service) {
    for (const char* const name : {kService, kControls}) {
        const ndk::SpAIBinder found(AServiceManager_waitForService(name));
        ASSERT_EQ(AIBinder_ping(found.get()), STATUS_OK);
    }
    Holdings last = Holdings::Of(service.Pid());
    for (int quiet = 0; quiet < kIdlePolls; ++quiet) {
        poll(nullptr, 0, kPollMs);
        const Holdings now = Holdings::Of(service.Pid());
        if (now.descriptors != last.descriptors || now.threads != last.threads) quiet = 0;
        last = now;
    }
}

Holdings ServiceProcess::AwaitWithin(const Child& service, const Holdings& most) {
    return Await(service, [&](const Holdings& now) { return now.IsWithin(most); });
}

Holdings ServiceProcess::AwaitMore(const Child& service, const Holdings& least) {
    return Await(service, [&](const Holdings& now) { return !now.IsWithin(least); });
}

std::unique_ptr<Child> ServiceProcess::StartClient(const std::string& point, int microseconds) {
    return std::make_unique<Child>(
            std::vector<std::string>{CLIENT_PROGRAM, point, std::to_string(microseconds)});
}

std::string ServiceProcess::Log() const {
    std::ifstream log(directory + "/log");
    return {std::istreambuf_iterator<char>(log), {}};
}

}  // namespace zarvo::test
