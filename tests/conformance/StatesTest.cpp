#include "tests/conformance/Fixture.h"

namespace conformance {
namespace {

using StateNotices = Sensor;
using Replacement = Sensor;

TEST_F(StateNotices, ComeBeforeTheAnswerOfWhatBringsThemAbout) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Prepare(client));
    EXPECT_EQ(client.receiver->TakeStates(), States());
    struct Step {
        std::string (*act)(const Client&);
        States told;
    };
    const Step steps[] = {
            {[](const Client& c) { return c.Start(kFusion | kGaze); }, {Told(kStarted)}},
            {[](const Client& c) { return c.Start(kFusion | kGaze); }, {}},
            {[](const Client& c) { return c.Stop(kFaceAngle); }, {}},
            {[](const Client& c) { return c.Stop(kGaze); }, {Told(kIdle), Told(kStarted)}},
            {[](const Client& c) { return c.Stop(kAllTypes); }, {Told(kIdle)}},
            {[](const Client& c) { return c.Stop(kAllTypes); }, {}},
            {[](const Client& c) { return c.Start(kAllTypes); }, {Told(kStarted)}},
            // Fewer than run: the stream goes on, and falls back at the next stop.
            {[](const Client& c) { return c.Start(kFusion | kGaze); }, {}},
            {[](const Client& c) { return c.Stop(kGaze); }, {Told(kIdle), Told(kStarted)}},
            {[](const Client& c) { return c.Unsubscribe(); }, {Told(kIdle)}},
            {[](const Client& c) { return c.Unsubscribe(); }, {}},
            {[](const Client& c) { return c.Unregister(); }, {}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE("step " + std::to_string(&step - steps));
        EXPECT_EQ(step.act(client), kOk);
        EXPECT_EQ(client.receiver->TakeStates(), step.told);
    }
}

TEST_F(StateNotices, AreToldAgainToAClientThatRegistersAgain) {
    Client client(service);
    ASSERT_NO_FATAL_FAILURE(Run(client, kFusion | kGaze, kFusion));
    ASSERT_EQ(client.Register(kFusion), kOk);
    EXPECT_EQ(client.handle, kHandle);
    EXPECT_EQ(client.receiver->TakeStates(), States{Told(kStarted)});
    // What runs goes on; the new types hold from the next subscription on.
    EXPECT_FALSE(client.receiver->AwaitEvent().empty());
    EXPECT_EQ(client.Subscribe(For(kGaze)), kBeyondRegistered);
    EXPECT_EQ(client.Stop(kFusion), kOk);
    EXPECT_EQ(client.Start(kGaze), kOk);
}

TEST_F(Replacement, StopsAndForgetsWhatTheOldClientHad) {
    Client old(service), next(service);
    ASSERT_NO_FATAL_FAILURE(Run(old, kFusion, kFusion));
    ASSERT_EQ(next.Register(kGaze), kOk);
    EXPECT_EQ(next.handle, old.handle);
    EXPECT_EQ(old.receiver->TakeStates(), States{Told(kIdle)});
    EXPECT_EQ(next.receiver->TakeStates(), States());
    const size_t before = old.receiver->EventCount();

    EXPECT_EQ(next.Start(kFusion), kBeyondSubscribed);
    EXPECT_EQ(next.Subscribe(For(kFusion)), kBeyondRegistered);
    ASSERT_EQ(next.Subscribe(For(kGaze)), kOk);
    ASSERT_EQ(next.Start(kGaze), kOk);
    EXPECT_FALSE(next.receiver->AwaitEvent().empty());
    // One event may have been on its way to the old one.
    EXPECT_LE(old.receiver->EventCount(), before + 1);
    EXPECT_EQ(old.receiver->TakeStates(), States());

    // The handle stands for whoever has it now.
    EXPECT_EQ(old.Stop(kGaze), kOk);
    EXPECT_EQ(next.receiver->TakeStates(), (States{Told(kStarted), Told(kIdle)}));
}

}  // namespace
}  // namespace conformance
