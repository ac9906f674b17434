#include <poll.h>

#include "tests/conformance/Fixture.h"
#include "tests/conformance/OtherProcess.h"

namespace conformance {
namespace {

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
}  // namespace conformance
