#pragma once

#include <android/binder_ibinder.h>

#include <memory>
#include <string>

#include <aidl/tests/BnPeer.h>

#include "host/binder/rpc/RpcClient.h"

namespace zarvo::fuzz {

/** An object at one end of a session: calls its visitors back and keeps none. */
class Peer : public aidl::tests::BnPeer {
  public:
    using Visitor = std::shared_ptr<aidl::tests::IPeer>;

    ndk::ScopedAStatus visit(const Visitor& visitor, int32_t number, std::string* text) override {
        *text = std::to_string(number);
        if (visitor == nullptr) return ndk::ScopedAStatus::ok();
        AIBinder_ping(visitor->asBinder().get());
        return visitor->tell(number);
    }
    ndk::ScopedAStatus giveBack(const Visitor& other, Visitor* result) override {
        *result = other;
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus tell(int32_t /*number*/) override { return ndk::ScopedAStatus::ok(); }
};

/** What a client does with a server whose root is a Peer. */
inline void Use(host::RpcSession& session) {
    session.WatchForDeath();
    const ndk::SpAIBinder root(host::AskRoot(session).Release());
    session.OpenIncoming(1);
    const auto peer = aidl::tests::IPeer::fromBinder(root);
    if (peer == nullptr) return;
    std::string text;
    Peer::Visitor back;
    peer->visit(ndk::SharedRefBase::make<Peer>(), 1, &text);
    peer->giveBack(ndk::SharedRefBase::make<Peer>(), &back);
    if (back != nullptr) AIBinder_ping(back->asBinder().get());
    peer->tell(2);
}

}  // namespace zarvo::fuzz
