#include <atomic>
#include <future>

#include "tests/callbacks/RegistryFixture.h"

namespace zarvo::test {
namespace {

using DeathNotice = RegistryFixture;

TEST_F(DeathNotice, RemovesADeadClientBeforeItTellsTheListener) {
    const RemoteCallback client;
    DeathListener listener;
    bool registered = true;
    listener.inside = [&] { registered = mRegistry->CheckClientHandleRegistered(1); };
    mRegistry->SetListener(&listener);
    Register(client.proxy);
    LogRecorder log;
    client.Die();
    mRegistry->SetListener(nullptr);
    EXPECT_FALSE(registered);
    EXPECT_EQ(listener.handles, std::vector<int64_t>{1});
    EXPECT_EQ(listener.callbacks[0], client.proxy);
    const Lines lines = log.TakeTexts();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "W: RemoteCallbackManager: unregister client for remote callback died:1");
    EXPECT_EQ(lines[1], "I: RemoteCallbackManager: unregister client:1");

    log.Take();
    mRegistry->OnRemoteCallbackDied(client.proxy->asBinder().get());
    EXPECT_EQ(log.TakeTexts(), Lines{"W: RemoteCallbackManager: can not find the died callback"});
    EXPECT_EQ(listener.handles.size(), 1U);
}

TEST_F(DeathNotice, LetsAListenerGoOnlyWhenNoNoticeIsInsideIt) {
    const RemoteCallback client;
    auto listener = std::make_unique<DeathListener>();
    std::promise<void> inside, release;
    listener->inside = [&] {
        inside.set_value();
        release.get_future().wait();
    };
    mRegistry->SetListener(listener.get());
    Register(client.proxy);
    client.connection->Kill();
    inside.get_future().wait();
    auto gone = std::async(std::launch::async, [&] {
        mRegistry->SetListener(nullptr);
        listener.reset();
    });
    EXPECT_EQ(gone.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    release.set_value();
    gone.get();
    client.connection->WaitForNotices();
}

TEST_F(DeathNotice, DoesNotHoldOneNoticeUpBehindAnother) {
    // A notice inside the listener may wait for an operation that the next notice is part of.
    const RemoteCallback first, second;
    DeathListener listener;
    std::promise<void> firstInside, secondInside;
    std::atomic<int> calls{0};
    listener.inside = [&] {
        if (++calls == 2) return secondInside.set_value();
        firstInside.set_value();
        secondInside.get_future().wait();
    };
    mRegistry->SetListener(&listener);
    Register(first.proxy);
    first.connection->Kill();
    firstInside.get_future().wait();
    Register(second.proxy);
    second.connection->Kill();
    first.connection->WaitForNotices();
    second.connection->WaitForNotices();
    mRegistry->SetListener(nullptr);
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace zarvo::test
