#include <sched.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <latch>
#include <random>
#include <semaphore>
#include <thread>

#include "tests/clients/Dump.h"
#include "tests/sweep/WholeService.h"

namespace zarvo::test {
namespace {

#ifdef AON_SLOW
constexpr int kLives = 20;
#else
constexpr int kLives = 100;
#endif
constexpr int kServices = 4;
/** On the client's sensor, and on that and another. */
constexpr std::array kDevices{0, 4};

/** Everything at once, on as many processors as the parameter says. */
class Storm : public WholeService, public testing::WithParamInterface<int> {
  protected:
    Storm() {
        sched_getaffinity(0, sizeof(mAll), &mAll);
        cpu_set_t some;
        CPU_ZERO(&some);
        for (int cpu = 0; cpu < CPU_SETSIZE && CPU_COUNT(&some) < GetParam(); ++cpu)
            if (CPU_ISSET(cpu, &mAll)) CPU_SET(cpu, &some);
        sched_setaffinity(0, sizeof(some), &some);
    }
    ~Storm() override { sched_setaffinity(0, sizeof(mAll), &mAll); }

    /** Does it once for each step of a client. */
    std::thread Accompany(std::counting_semaphore<>& steps, std::function<void()> what) {
        return std::thread([this, &steps, what = std::move(what)] {
            for (steps.acquire(); !mDone; steps.acquire())
                what();
        });
    }
    void Step() {
        mEventSteps.release();
        mCameraSteps.release();
    }
    /** Clients come, do whatever comes to their mind, and leave, or die in the middle of it. */
    void LiveAndDie(unsigned seed) {
        std::minstd_rand random(seed);
        for (int i = 0; i < kLives; ++i) {
            RemoteClient client(mService);
            std::vector<std::function<void()>> steps{
                    [&] { client.Register(kTypes); }, [&] { client.Subscribe(Config()); },
                    [&] { client.Start(kTypes); },    [&] { client.Start(1); },
                    [&] { client.AskForSensors(); },  [&] { client.Stop(1); },
                    [&] { client.Register(kTypes); }, [&] { client.Subscribe(Config()); },
                    [&] { client.Start(kTypes); },    [&] { client.Stop(kTypes); },
                    [&] { client.Unsubscribe(); },    [&] { client.Unregister(); }};
            // What comes after the first three, in any order.
            std::shuffle(steps.begin() + 3, steps.end(), random);
            std::latch reached(1);
            std::thread death([&, dies = random() % 2 == 0] {
                reached.wait();
                if (dies) client.BeginToDie();
            });
            const size_t last = random() % steps.size();
            for (size_t step = 0; step < steps.size(); ++step) {
                if (step == last) reached.count_down();
                Step();
                steps[step]();
            }
            death.join();
        }
    }

    /** Somebody looks at all of it meanwhile. */
    void Look() {
        for (int i = 0; i < kLives; ++i)
            EXPECT_NE(DumpOf(mService->asBinder().get()).find("latest changes:"),
                      std::string::npos);
    }

    std::atomic<bool> mDone{false};
    std::counting_semaphore<> mEventSteps{0}, mCameraSteps{0};

  private:
    cpu_set_t mAll{};
};

TEST_P(Storm, PassesAndLeavesAWholeService) {
    ExpectWhole();
    mSimulator.Shutdown();
    const Holdings before = Now();
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::thread others[] = {Accompany(mEventSteps, [this] { mSimulator.DeliverOne(); }),
                            Accompany(mCameraSteps, [this, device = 0U]() mutable {
                                const int id = kDevices[device++ % kDevices.size()];
                                mManager->NotifyOpen(id);
                                EXPECT_FALSE(mSimulator.Running());
                                mManager->NotifyClose(id);
                            })};
    for (unsigned generation = 0; generation < kServices; ++generation) {
        std::thread clients[] = {std::thread([&] { LiveAndDie(seed + 3 * generation); }),
                                 std::thread([&] { LiveAndDie(seed + 3 * generation + 1); }),
                                 std::thread([&] { LiveAndDie(seed + 3 * generation + 2); }),
                                 std::thread([&] { Look(); })};
        for (std::thread& client : clients)
            client.join();
        // The service ends while events come and notices are pending, and another one begins.
        mService.reset();
        mService = ndk::SharedRefBase::make<aon::AONService>();
    }
    mDone = true;
    Step();
    for (std::thread& other : others)
        other.join();
    for (const int device : kDevices)
        mManager->NotifyClose(device);
    ExpectNoCamera();
    // Who died while it registered is still there, and runs what the last one with its handle ran.
    mManager->StopService();
    ExpectWhole();
    ExpectNothingLeft(before);
}

INSTANTIATE_TEST_SUITE_P(Processors, Storm, testing::Values(1, 2));

}  // namespace
}  // namespace zarvo::test
