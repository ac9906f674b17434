#include "host/binder/Loopback.h"

#include <chrono>
#include <future>

#include "tests/binder/Peer.h"

namespace tests {
namespace {

using LoopbackTest = ConnectionTest;

TEST_F(LoopbackTest, CallsInsideCallsEndBeforeTheStackDoes) {
    const auto visitor = SharedRefBase::make<Peer>();
    ASSERT_EQ(Visit(visitor), STATUS_OK);
    const auto callBy = [](const std::shared_ptr<IPeer>& next) {
        return [next](const auto&, int32_t number, std::string* text) {
            return next->visit(nullptr, number, text);
        };
    };
    visitor->onVisit = callBy(mProxy);
    mPeer->onVisit = callBy(mPeer->visitor);
    EXPECT_EQ(Visit(), STATUS_FAILED_TRANSACTION);
    EXPECT_GT(mPeer->visits, 50);
    EXPECT_EQ(AIBinder_ping(mRoot.get()), STATUS_OK);
    mPeer->onVisit = nullptr;
    visitor->onVisit = nullptr;
}

TEST_F(LoopbackTest, LocalObjectBecomesAProxyAndComesBackAsItself) {
    const auto visitor = SharedRefBase::make<Peer>();
    EXPECT_EQ(Visit(visitor), STATUS_OK);
    const SpAIBinder seen = mPeer->visitor->asBinder();
    EXPECT_TRUE(AIBinder_isRemote(seen.get()));
    EXPECT_EQ(Visit(visitor), STATUS_OK);
    EXPECT_EQ(mPeer->visitor->asBinder(), seen);

    for (const std::shared_ptr<IPeer>& sent : {std::shared_ptr<IPeer>(visitor), mProxy, {}}) {
        std::shared_ptr<IPeer> back = mProxy;
        EXPECT_TRUE(mProxy->giveBack(sent, &back).isOk());
        ASSERT_EQ(back != nullptr, sent != nullptr);
        EXPECT_TRUE(back == sent || back->asBinder() == sent->asBinder());
    }
    // One of another connection cannot pass, nor be connected to.
    const auto other = Loopback::Connect(mPeer->asBinder().get());
    EXPECT_EQ(Visit(IPeer::fromBinder(other->Root())), STATUS_INVALID_OPERATION);
    EXPECT_EQ(Loopback::Connect(mRoot.get()), nullptr);
    EXPECT_EQ(Loopback::Connect(nullptr), nullptr);
}

TEST_F(LoopbackTest, ObjectLivesUntilTheLastProxyAndTheLastUnsentParcelGo) {
    for (const bool parcelFirst : {true, false}) {
        SCOPED_TRACE(parcelFirst);
        std::promise<void> ended;
        auto end = ended.get_future();
        auto visitor = SharedRefBase::make<Peer>();
        visitor->onEnd = [&ended] { ended.set_value(); };
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(Visit(visitor), STATUS_OK);
        ScopedAParcel in;
        ASSERT_EQ(AIBinder_prepareTransaction(mRoot.get(), in.getR()), STATUS_OK);
        ASSERT_EQ(IPeer::writeToParcel(in.get(), visitor), STATUS_OK);
        visitor.reset();
        parcelFirst ? in.set(nullptr) : mPeer->visitor.reset();
        AIBinder_ping(mRoot.get());
        EXPECT_EQ(end.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
        parcelFirst ? mPeer->visitor.reset() : in.set(nullptr);
        end.wait();
    }
}

}  // namespace
}  // namespace tests
