#include <array>
#include <csignal>
#include <random>

#include "tests/programs/ServiceProcess.h"

namespace zarvo::test {
namespace {

class DyingClients : public ServiceProcess {
  protected:
    /** A fresh client has handle 1, and events. */
    static void ExpectFreshOneIsServed() {
        const auto client = StartClient("live");
        EXPECT_EQ(client->Line(), "1");
        EXPECT_EQ(client->Line(), "event");
        EXPECT_EQ(client->Wait(), 0);
    }
};

TEST_F(DyingClients, LeaveNothingBehindAThousandTimes) {
    const auto service = Start();
    ASSERT_NO_FATAL_FAILURE(AwaitIdle(*service));
    const Holdings before = Holdings::Of(service->Pid());
    constexpr std::array kPoints = {"found", "registered", "subscribed", "started",
                                    "event", "state",      "begin",      "call"};
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::printf("seed %u\n", seed);
    std::minstd_rand random(seed);
    long warm = 0;
    for (int i = 0; i < CLIENTS; ++i) {
        const char* const point = kPoints[random() % kPoints.size()];
        const auto client = StartClient(point, static_cast<int>(random() % 20'000));
        ASSERT_EQ(client->Wait(), Child::kBySignal + SIGKILL)
                << i << " " << point << ": " << client->Line() << ", " << client->Line();
        if (i == CLIENTS / 4) warm = ResidentKiB(service->Pid());
    }
    ExpectFreshOneIsServed();
    EXPECT_PRED2([](const Holdings& has, const Holdings& had) { return has.IsWithin(had); },
                 AwaitWithin(*service, before), before);
    EXPECT_LT(ResidentKiB(service->Pid()), warm + MAY_GROW_KIB);
    service->Signal(SIGTERM);
    EXPECT_EQ(service->Wait(), 0);
}

TEST_F(DyingClients, ThatAreStoppedHoldTheNextUntilTheyAreKilled) {
    const auto service = Start();
    const auto stopped = StartClient("receive");
    ASSERT_EQ(stopped->Line(), "1");
    ASSERT_EQ(stopped->Line(), "event");
    stopped->Stop();
    const Holdings before = Holdings::Of(service->Pid());
    const auto next = StartClient("live");
    ASSERT_FALSE(AwaitMore(*service, before).IsWithin(before)) << "the next does not come in";
    stopped->Signal(SIGKILL);
    EXPECT_EQ(next->Line(), "1");
    EXPECT_EQ(next->Line(), "event");
    EXPECT_EQ(next->Wait(), 0);
}

}  // namespace
}  // namespace zarvo::test
