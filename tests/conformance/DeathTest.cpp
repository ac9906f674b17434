#include <android/binder_process.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

/** What the other process does until it is killed. */
constexpr char kRegistered[] = "registered";
constexpr char kReceiving[] = "receiving";
constexpr char kInsideACallback[] = "inside";

constexpr char kArrived = '!';

/** Says that the role's end is reached, and waits there to be killed. */
void Arrive() {
    if (write(STDOUT_FILENO, &kArrived, 1) != 1) _exit(EXIT_FAILURE);
    while (true)
        pause();
}

/**
 * This program as a client in a process of its own, which ends by SIGKILL; when this object or its
 * thread goes at the latest.
 */
class OtherProcess {
  public:
    explicit OtherProcess(const std::string& role) {
        std::array<int, 2> output{-1, -1};
        if (pipe2(output.data(), O_CLOEXEC) != 0) return;
        mOutput = output[0];
        mPid = fork();
        if (mPid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(output[1], STDOUT_FILENO);
            execl("/proc/self/exe", "aon_conformance_test", "--client", role.c_str(), nullptr);
            _exit(EXIT_FAILURE);
        }
        close(output[1]);
    }
    ~OtherProcess() {
        Kill();
        if (mOutput >= 0) close(mOutput);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    /** Waits until it has come to where its role ends: true if it did. */
    bool Arrives() const {
        const int wait = static_cast<int>(std::chrono::milliseconds(kPatience).count());
        pollfd output{.fd = mOutput, .events = POLLIN, .revents = 0};
        char byte = 0;
        return poll(&output, 1, wait) == 1 && read(mOutput, &byte, 1) == 1 && byte == kArrived;
    }
    void Kill() {
        // Not what kill() takes for several processes.
        if (mPid <= 0) return;
        kill(mPid, SIGKILL);
        waitpid(std::exchange(mPid, 0), nullptr, 0);
    }

  private:
    pid_t mPid = 0;
    int mOutput = -1;
};

/** A client in another process, killed in a role. */
class DeadClients : public Sensor, public testing::WithParamInterface<const char*> {
  protected:
    /** Whether the service lets go of the only client by itself, soon. Asks in a way that changes
     * nothing: nobody can start these types. */
    bool IsForgotten() const {
        const Client nobody(service);
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (Answer(service->startService(kHandle, -1)) != kUnknown) {
            if (std::chrono::steady_clock::now() > end) return false;
            poll(nullptr, 0, 10);
        }
        return true;
    }

    /** The next client has what it asks for, and keeps it. */
    void ExpectNextIsServed() const {
        Client next(service);
        ASSERT_EQ(next.Register(kAllTypes), kOk);
        EXPECT_EQ(next.handle, kHandle);
        // The service may be at letting go just now; then it tells what ran, and that it ends.
        const States told = next.receiver->TakeStates();
        EXPECT_TRUE(told.empty() || told == (States{Told(kStarted), Told(kIdle)}));
        ASSERT_EQ(next.Subscribe(config), kOk);
        ASSERT_EQ(next.Start(kAllTypes), kOk);
        EXPECT_FALSE(next.receiver->AwaitEvent().empty());
        EXPECT_EQ(next.receiver->TakeStates(), States{Told(kStarted)});
    }
};

TEST_P(DeadClients, AreForgottenOrReplacedBeforeTheirDeathIsNews) {
    for (const bool isNews : {true, false}) {
        OtherProcess other(GetParam());
        ASSERT_TRUE(other.Arrives()) << "the client in another process did not get there";
        other.Kill();
        EXPECT_TRUE(!isNews || IsForgotten());
        ExpectNextIsServed();
    }
}

INSTANTIATE_TEST_SUITE_P(KilledWhile, DeadClients,
                         testing::Values(kRegistered, kReceiving, kInsideACallback),
                         [](const auto& role) { return std::string(role.param); });

}  // namespace

int PlayRole(const std::string& role) {
    ABinderProcess_startThreadPool();
    const auto service = FindService();
    aon::SensorConfigInfo config;
    if (service == nullptr) return EXIT_FAILURE;
    Client client(service);
    if (role == kInsideACallback) client.receiver->SetInState(Arrive);
    if (client.Register(kAllTypes) != kOk) return EXIT_FAILURE;
    if (role == kRegistered) Arrive();
    if (!FirstConfig(Sensors(*service), kAllTypes, &config)) return EXIT_FAILURE;
    if (client.Subscribe(config) != kOk || client.Start(kAllTypes) != kOk) return EXIT_FAILURE;
    if (!client.receiver->AwaitEvent().empty()) Arrive();
    return EXIT_FAILURE;
}

}  // namespace conformance
