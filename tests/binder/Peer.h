#pragma once

#include <android/binder_interface_utils.h>
#include <android/binder_parcel_utils.h>
#include <android/binder_stability.h>

#include <functional>
#include <memory>
#include <string>

namespace aidl::tests {

/** An interface whose two sides can pass each other around; written as the compiler would. */
class IPeer : public ::ndk::ICInterface {
  public:
    static const char* descriptor;
    static constexpr uint32_t TRANSACTION_visit = FIRST_CALL_TRANSACTION + 0;
    static constexpr uint32_t TRANSACTION_giveBack = FIRST_CALL_TRANSACTION + 1;
    static constexpr uint32_t TRANSACTION_tell = FIRST_CALL_TRANSACTION + 2;

    static std::shared_ptr<IPeer> fromBinder(const ::ndk::SpAIBinder& binder);
    static binder_status_t writeToParcel(AParcel* parcel, const std::shared_ptr<IPeer>& instance);
    static binder_status_t readFromParcel(const AParcel* parcel, std::shared_ptr<IPeer>* instance);

    /** What it does is the implementation's matter; gives a text. */
    virtual ::ndk::ScopedAStatus visit(const std::shared_ptr<IPeer>& in_visitor, int32_t in_number,
                                       std::string* _aidl_return) = 0;
    /** Gives the argument back. */
    virtual ::ndk::ScopedAStatus giveBack(const std::shared_ptr<IPeer>& in_other,
                                          std::shared_ptr<IPeer>* _aidl_return) = 0;
    /** Oneway. */
    virtual ::ndk::ScopedAStatus tell(int32_t in_number) = 0;
};

class BpPeer : public ::ndk::BpCInterface<IPeer> {
  public:
    explicit BpPeer(const ::ndk::SpAIBinder& binder) : BpCInterface(binder) {}

    ::ndk::ScopedAStatus visit(const std::shared_ptr<IPeer>& in_visitor, int32_t in_number,
                               std::string* _aidl_return) override;
    ::ndk::ScopedAStatus giveBack(const std::shared_ptr<IPeer>& in_other,
                                  std::shared_ptr<IPeer>* _aidl_return) override;
    ::ndk::ScopedAStatus tell(int32_t in_number) override;
};

class BnPeer : public ::ndk::BnCInterface<IPeer> {
  protected:
    ::ndk::SpAIBinder createBinder() override;
};

/** The class of all peers, and another one of the same name. */
AIBinder_Class* PeerClass();
AIBinder_Class* OtherPeerClass();

/** A peer whose behaviour a test sets, before the peer is called. */
class Peer : public BnPeer {
  public:
    using Visit = std::function<::ndk::ScopedAStatus(const std::shared_ptr<IPeer>& visitor,
                                                     int32_t number, std::string* text)>;

    explicit Peer(Visit visit = {}) : onVisit(std::move(visit)) {}
    ~Peer() override {
        if (onEnd) onEnd();
    }

    ::ndk::ScopedAStatus visit(const std::shared_ptr<IPeer>& in_visitor, int32_t in_number,
                               std::string* _aidl_return) override {
        if (!onVisit) return ::ndk::ScopedAStatus::ok();
        return onVisit(in_visitor, in_number, _aidl_return);
    }
    ::ndk::ScopedAStatus giveBack(const std::shared_ptr<IPeer>& in_other,
                                  std::shared_ptr<IPeer>* _aidl_return) override {
        *_aidl_return = in_other;
        return ::ndk::ScopedAStatus::ok();
    }
    ::ndk::ScopedAStatus tell(int32_t in_number) override {
        if (onTell) onTell(in_number);
        return ::ndk::ScopedAStatus::ok();
    }

    Visit onVisit;
    std::function<void(int32_t number)> onTell;
    std::function<void()> onEnd;
};

}  // namespace aidl::tests
