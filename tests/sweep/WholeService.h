#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "host/stream/SimulatorControl.h"
#include "manager/AONManager.h"
#include "service/AONService.h"
#include "tests/clients/RemoteClient.h"
#include "tests/support/Holdings.h"

namespace zarvo::test {

inline constexpr char kOk[] = "No error";
inline constexpr int kTypes = 15;
inline constexpr int kCamera = 0;
/** No camera has this number. */
inline constexpr int kNoCamera = 99;

/** The service on the simulated sensor, which delivers by command, and what makes it whole. */
class WholeService : public testing::Test {
  protected:
    WholeService() { mSimulator.SetManualDelivery(true); }
    ~WholeService() override {
        mService.reset();
        mSimulator.Shutdown();
    }

    /** The smallest picture. */
    static RemoteClient::SensorConfigInfo Config() {
        auto config = RemoteClient::Config(0, kTypes);
        config.frameWidth = 320;
        config.frameHeight = 240;
        return config;
    }

    /** The next client finds everything as it should be. */
    void ExpectWhole() {
        RemoteClient client(mService);
        EXPECT_EQ(client.Register(kTypes), kOk);
        EXPECT_EQ(client.handle, 1);
        EXPECT_EQ(client.Subscribe(Config()), kOk);
        // A start may be told after the camera that ended it, and that is remembered.
        client.callback->TakeStates();
        EXPECT_EQ(client.Start(kTypes), kOk);
        // A stream that would not stop for the one before runs on, and a frame that finds the
        // manager busy with a camera is dropped.
        Await([&] { return mSimulator.DeliverOne() && !client.callback->TakeEvents().empty(); });
        EXPECT_EQ(client.Unsubscribe(), kOk);
        EXPECT_EQ(client.Unregister(), kOk);
        EXPECT_EQ(client.callback->TakeStates(),
                  (std::vector<RecordingCallback::State>{{0, 1}, {0, 0}}));
        EXPECT_FALSE(mSimulator.Running());
    }

    /** What this process holds. */
    static Holdings Now() { return Holdings::Of(getpid()); }
    template <typename Condition>
    static void Await(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        bool isMet = condition();
        for (; !isMet && std::chrono::steady_clock::now() < end; isMet = condition())
            std::this_thread::yield();
        ASSERT_TRUE(isMet);
    }
    /** Ends the stream's threads, and waits until those of sessions have ended. */
    void ExpectNothingLeft(const Holdings& before) {
        mSimulator.Shutdown();
        Await([&] { return Now().IsWithin(before); });
    }

    /** Waits until all of it was told: a notification waits for the one before it. */
    void AwaitCameraNotices() { mManager->NotifyClose(kNoCamera); }
    void ExpectNoCamera() {
        AwaitCameraNotices();
        Await([this] {
            const auto status = mManager->Status();
            return status && status->deviceCount == 0;
        });
    }

    host::SimulatorControl& mSimulator = host::SimulatorControl::Instance();
    const std::shared_ptr<aon::AONManager> mManager = aon::AONManager::GetSingleton();
    std::shared_ptr<aon::AONService> mService = ndk::SharedRefBase::make<aon::AONService>();
};

}  // namespace zarvo::test
