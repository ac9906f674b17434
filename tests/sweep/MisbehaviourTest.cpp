#include <atomic>
#include <climits>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/clients/Dump.h"
#include "tests/sweep/WholeService.h"

namespace zarvo::test {
namespace {

/** Clients that do what the interface asks them not to. */
class Misbehaviour : public WholeService {
  protected:
    /** Runs until it is told to return. */
    class Hang {
      public:
        Hang() = default;
        ~Hang() { Release(); }
        Hang(const Hang&) = delete;
        Hang& operator=(const Hang&) = delete;
        void Enter() {
            if (mEntered.exchange(true)) return;
            mInside.set_value();
            mReleased.wait();
        }
        void AwaitInside() { mInside.get_future().wait(); }
        void Release() {
            if (!mOver.exchange(true)) mRelease.set_value();
        }

      private:
        std::atomic<bool> mEntered{false}, mOver{false};
        std::promise<void> mInside, mRelease;
        std::shared_future<void> mReleased{mRelease.get_future().share()};
    };

    void ExpectDumped(const std::string& part) const {
        const std::string text = DumpOf(mService->asBinder().get());
        EXPECT_NE(text.find(part), std::string::npos) << text;
    }
    void Run(RemoteClient& client) {
        ASSERT_EQ(client.Register(kTypes), kOk);
        ASSERT_EQ(client.Subscribe(Config()), kOk);
        ASSERT_EQ(client.Start(kTypes), kOk);
    }
};

TEST_F(Misbehaviour, OfWhoNeverReturnsFromAnEventEndsWithItsDeath) {
    Hang hang;
    RemoteClient client(mService);
    client.callback->SetInEvent([&] { hang.Enter(); });
    Run(client);
    ASSERT_TRUE(mSimulator.RequestFrame());
    hang.AwaitInside();
    ExpectDumped("callback onAONEvent  for ");
    // The next one need not wait for that: only the events of the old stream do.
    RemoteClient next(mService);
    Run(next);
    client.BeginToDie();
    EXPECT_TRUE(mSimulator.DeliverOne());
    EXPECT_TRUE(next.callback->WaitForEvents(1));
    hang.Release();
    next.Unsubscribe();
    next.Unregister();
    ExpectWhole();
}

TEST_F(Misbehaviour, OfWhoNeverReturnsFromAStateHoldsTheNextUntilItsDeath) {
    Hang hang;
    RemoteClient client(mService);
    client.callback->SetInState([&] { hang.Enter(); });
    auto running = std::async(std::launch::async, [&] {
        client.Register(kTypes);
        client.Subscribe(Config());
        return client.Start(kTypes);
    });
    hang.AwaitInside();
    ExpectDumped("callback onSensorStateChanged  for ");
    RemoteClient next(mService);
    auto registering = std::async(std::launch::async, [&] { return next.Register(kTypes); });
    ExpectDumped("name: startService");
    client.BeginToDie();
    EXPECT_EQ(registering.get(), kOk);
    EXPECT_EQ(next.handle, 1);
    hang.Release();
    EXPECT_NE(running.get(), kOk);
    EXPECT_EQ(next.Unregister(), kOk);
    ExpectWhole();
}

TEST_F(Misbehaviour, OfWhoNeverReturnsFromACamerasNoticeHoldsTheNextNoticeUntilItsDeath) {
    Hang hang;
    std::atomic<bool> hangs{false};
    RemoteClient client(mService);
    client.callback->SetInState([&] {
        if (hangs) hang.Enter();
    });
    Run(client);
    hangs = true;
    mManager->NotifyOpen(kCamera);
    hang.AwaitInside();
    ExpectDumped("callback onSensorStateChanged  for ");
    auto closing = std::async(std::launch::async, [&] { mManager->NotifyClose(kCamera); });
    client.BeginToDie();
    closing.get();
    hang.Release();
    ExpectNoCamera();
    ExpectWhole();
}

TEST_F(Misbehaviour, OfWhoLeavesInsideAnEventIsItsRight) {
    RemoteClient client(mService);
    std::vector<std::string> answers;
    client.callback->SetInEvent([&] {
        answers = {client.Register(kTypes), client.Stop(kTypes), client.Unsubscribe(),
                   client.Unregister(), client.Unregister()};
    });
    Run(client);
    EXPECT_TRUE(mSimulator.DeliverOne());
    EXPECT_EQ(std::vector(answers.begin(), answers.end() - 1), std::vector<std::string>(4, kOk));
    EXPECT_NE(answers.back(), kOk);
    ExpectWhole();
}

TEST_F(Misbehaviour, OfManyWhoRegisterAndCallInALoopLeavesNothingBehind) {
    ExpectWhole();
    mSimulator.Shutdown();
    const Holdings before = Now();
    {
        RemoteClient first(mService), second(mService);
        const auto flood = [](RemoteClient& client) {
            for (int i = 0; i < 100; ++i) {
                const auto callback = ndk::SharedRefBase::make<RecordingCallback>();
                int64_t handle = 0;
                client.service->registerClient(callback, kTypes, &handle);
                client.service->subscribeSensor(handle, Config());
                client.service->startService(handle, kTypes);
                client.service->stopService(INT64_MIN + i, -1);
            }
        };
        std::thread floods[] = {
                std::thread(flood, std::ref(first)), std::thread(flood, std::ref(first)),
                std::thread(flood, std::ref(second)), std::thread(flood, std::ref(second))};
        for (int i = 0; i < 20; ++i)
            ExpectDumped("service:\n");
        for (std::thread& one : floods)
            one.join();
        // They are all gone but for the last one, whose process is let die.
        first.Die();
        second.Die();
    }
    ExpectWhole();
    ExpectNothingLeft(before);
}

}  // namespace
}  // namespace zarvo::test
