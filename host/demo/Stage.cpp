#include "host/demo/Stage.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace zarvo::host::demo {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/** Generous: on a busy machine a step takes a while. */
constexpr std::chrono::seconds kPatience{20};
/** A socket's path holds 107 bytes, the longest name of a service takes half of them. */
constexpr size_t kLongestParent = 35;

std::string DirectoryTemplate() {
    const char* const chosen = std::getenv("TMPDIR");
    const std::string parent = chosen == nullptr ? "" : chosen;
    const bool fits = !parent.empty() && parent.size() <= kLongestParent;
    return (fits ? parent : "/tmp") + "/aon-demo-XXXXXX";
}

std::string PathBesideThis(const std::string& program) {
    std::error_code error;
    const auto own = std::filesystem::read_symlink("/proc/self/exe", error);
    return (own.parent_path() / program).string();
}

}  // namespace

Stage::Stage(Narrator& narrator) : mNarrator(narrator) {
    TakeSignals();
    MakeDirectory();
}

Stage::~Stage() {
    Clear();
}

void Stage::TakeSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD, SIGCONT})
        sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    // A closed standard output is noticed by the narrator.
    std::signal(SIGPIPE, SIG_IGN);
    mSignals = FileDescriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!mSignals.IsOpen()) Abort(std::string("cannot wait for signals: ") + strerror(errno));
}

void Stage::MakeDirectory() {
    std::string path = DirectoryTemplate();
    if (mkdtemp(path.data()) == nullptr) Abort("cannot make " + path + ": " + strerror(errno));
    mDirectory = path;
    setenv("AON_RUNTIME_DIR", path.c_str(), 1);
}

Process& Stage::Start(const std::string& name, const std::string& program,
                      const std::vector<std::string>& arguments, Process::Errors errors,
                      LineSink sink) {
    std::vector<std::string> command{PathBesideThis(program)};
    command.insert(command.end(), arguments.begin(), arguments.end());
    mRoles.push_back({std::make_unique<Process>(name, command, errors), std::move(sink)});
    Process& process = *mRoles.back().process;
    if (process.Pid() < 0) Abort("cannot start " + name + ": " + strerror(errno));
    return process;
}

void Stage::MayEnd(const Process& process) {
    for (Role& role : mRoles)
        role.mayEnd = role.mayEnd || role.process.get() == &process;
}

void Stage::Await(const std::string& what, const std::function<bool()>& condition) {
    auto deadline = steady_clock::now() + kPatience;
    mWasStopped = false;
    while (!condition()) {
        // The time in which the user had stopped everything does not count.
        if (std::exchange(mWasStopped, false)) deadline = steady_clock::now() + kPatience;
        if (steady_clock::now() >= deadline)
            Abort("waited " + std::to_string(kPatience.count()) + " s in vain: " + what);
        Turn(deadline);
    }
}

void Stage::AwaitEnd(const Process& process) {
    MayEnd(process);
    Await(process.Title() + " ends",
          [&process] { return process.HasEnded() && process.Output() < 0; });
}

void Stage::Pause(milliseconds time) {
    const auto end = steady_clock::now() + time;
    while (steady_clock::now() < end)
        Turn(end);
}

void Stage::Turn(Time until) {
    WaitForAnything(until);
    HandleSignals();
    Hear();
    CheckRoles();
}

void Stage::WaitForAnything(Time until) const {
    std::vector<pollfd> sources{{.fd = mSignals.Get(), .events = POLLIN, .revents = 0}};
    for (const Role& role : mRoles)
        sources.push_back({.fd = role.process->Output(), .events = POLLIN, .revents = 0});
    const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
    const auto wait = std::max(left, milliseconds(0)).count();
    poll(sources.data(), sources.size(), static_cast<int>(wait));
}

void Stage::Hear() {
    // Read the cause after its effect and tell it first: what the service logged before it answered
    // a client has come when the answer has.
    for (auto role = mRoles.rbegin(); role != mRoles.rend(); ++role)
        role->process->Receive();
    for (Role& role : mRoles)
        while (const auto line = role.process->NextLine())
            role.sink(*line);
}

void Stage::CheckRoles() {
    for (const Role& role : mRoles) {
        if (!role.process->HasEnded() || role.mayEnd) continue;
        Abort(role.process->Title() + " ended too early: " + role.process->EndText());
    }
    if (mNarrator.IsMute()) Abort("cannot write to the standard output");
}

void Stage::HandleSignals() {
    signalfd_siginfo info{};
    while (read(mSignals.Get(), &info, sizeof info) == sizeof info) {
        const auto signal = static_cast<int>(info.ssi_signo);
        if (signal == SIGCONT) {
            mWasStopped = true;
        } else if (signal != SIGCHLD) {
            Abort(std::string("told to end: ") + strsignal(signal));
        }
    }
    // Several ends may have come as one signal.
    for (const Role& role : mRoles)
        role.process->Reap();
}

bool Stage::IsAlone() {
    return waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD;
}

bool Stage::RemoveDirectory() {
    if (rmdir(mDirectory.c_str()) != 0) return false;
    mDirectory.clear();
    return true;
}

void Stage::Clear() {
    for (const Role& role : mRoles)
        role.process->Kill();
    std::error_code ignored;
    if (!mDirectory.empty()) std::filesystem::remove_all(mDirectory, ignored);
    mDirectory.clear();
}

void Stage::Abort(const std::string& why) {
    Clear();
    std::fprintf(stderr, "aon-demo: %s\n", why.c_str());
    std::exit(EXIT_FAILURE);
}

}  // namespace zarvo::host::demo
