#pragma once

#include <aidl/tests/BnPeer.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "host/binder/Loopback.h"

namespace tests {

using ::aidl::tests::IPeer;
using ::ndk::ScopedAParcel;
using ::ndk::ScopedAStatus;
using ::ndk::SharedRefBase;
using ::ndk::SpAIBinder;
using ::zarvo::host::Loopback;

/** A peer whose behaviour a test sets, before the peer is called. */
class Peer : public ::aidl::tests::BnPeer {
  public:
    using Visitor = std::shared_ptr<IPeer>;

    ~Peer() override {
        if (onEnd) onEnd();
    }

    /** Without onVisit it keeps the visitor, and gives the number as text or as failure. */
    ScopedAStatus visit(const Visitor& in_visitor, int32_t in_number,
                        std::string* _aidl_return) override {
        ++visits;
        if (onVisit) return onVisit(in_visitor, in_number, _aidl_return);
        visitor = in_visitor;
        *_aidl_return = std::to_string(in_number);
        return ScopedAStatus::fromStatus(in_number < 0 ? in_number : STATUS_OK);
    }
    ScopedAStatus giveBack(const Visitor& in_other, Visitor* _aidl_return) override {
        *_aidl_return = in_other;
        return ScopedAStatus::ok();
    }
    ScopedAStatus tell(int32_t in_number) override {
        if (onTell) onTell(in_number);
        return ScopedAStatus::ok();
    }

    std::function<ScopedAStatus(const Visitor& visitor, int32_t number, std::string* text)> onVisit;
    std::function<void(int32_t number)> onTell;
    std::function<void()> onEnd;
    std::atomic<int> visits{0};
    Visitor visitor;
};

inline const AIBinder_Class* PeerClass() {
    return AIBinder_getClass(SharedRefBase::make<Peer>()->asBinder().get());
}

/** A server's peer and what a client sees of it. */
class ConnectionTest : public testing::Test {
  protected:
    ConnectionTest() { Connect(); }

    void Connect() {
        mPeer = SharedRefBase::make<Peer>();
        mLoopback = Loopback::Connect(mPeer->asBinder().get());
        mRoot = mLoopback->Root();
        mProxy = IPeer::fromBinder(mRoot);
    }
    binder_status_t Visit(const std::shared_ptr<IPeer>& visitor = nullptr, int32_t number = 0) {
        std::string text;
        return mProxy->visit(visitor, number, &text).getStatus();
    }

    std::shared_ptr<Peer> mPeer;
    std::shared_ptr<Loopback> mLoopback;
    SpAIBinder mRoot;
    std::shared_ptr<IPeer> mProxy;
};

}  // namespace tests
