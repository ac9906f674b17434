#include "tests/binder/Peer.h"

using ::ndk::AParcel_readData;
using ::ndk::AParcel_writeData;
using ::ndk::ScopedAParcel;
using ::ndk::ScopedAStatus;
using ::ndk::SpAIBinder;

namespace aidl::tests {

namespace {

template <typename... Args>
binder_status_t WriteAll(AParcel* parcel, const Args&... args) {
    binder_status_t status = STATUS_OK;
    (void)((status = AParcel_writeData(parcel, args), status == STATUS_OK) && ...);
    return status;
}

template <typename... Args>
binder_status_t ReadAll(const AParcel* parcel, Args*... args) {
    binder_status_t status = STATUS_OK;
    (void)((status = AParcel_readData(parcel, args), status == STATUS_OK) && ...);
    return status;
}

/** Makes a call with these arguments; `out` has the reply when the status is success. */
template <typename... Args>
ScopedAStatus Call(AIBinder* binder, transaction_code_t code, binder_flags_t flags,
                   ScopedAParcel* out, const Args&... args) {
    ScopedAParcel in;
    binder_status_t status = AIBinder_prepareTransaction(binder, in.getR());
    if (status == STATUS_OK) status = WriteAll(in.get(), args...);
    if (status == STATUS_OK) {
        status = AIBinder_transact(binder, code, in.getR(), out->getR(), flags);
    }
    if (status != STATUS_OK || (flags & FLAG_ONEWAY) != 0) return ScopedAStatus::fromStatus(status);
    ScopedAStatus outcome;
    status = AParcel_readStatusHeader(out->get(), outcome.getR());
    return status == STATUS_OK ? std::move(outcome) : ScopedAStatus::fromStatus(status);
}

template <typename Result>
ScopedAStatus ReadResult(ScopedAStatus outcome, const ScopedAParcel& out, Result* result) {
    if (!outcome.isOk()) return outcome;
    return ScopedAStatus::fromStatus(AParcel_readData(out.get(), result));
}

template <typename... Result>
binder_status_t Reply(AParcel* out, const ScopedAStatus& outcome, const Result&... results) {
    const binder_status_t status = AParcel_writeStatusHeader(out, outcome.get());
    return status == STATUS_OK && outcome.isOk() ? WriteAll(out, results...) : status;
}

binder_status_t OnVisit(IPeer* peer, const AParcel* in, AParcel* out) {
    std::shared_ptr<IPeer> visitor;
    int32_t number = 0;
    const binder_status_t status = ReadAll(in, &visitor, &number);
    if (status != STATUS_OK) return status;
    std::string text;
    const ScopedAStatus outcome = peer->visit(visitor, number, &text);
    return Reply(out, outcome, text);
}

binder_status_t OnGiveBack(IPeer* peer, const AParcel* in, AParcel* out) {
    std::shared_ptr<IPeer> other;
    const binder_status_t status = ReadAll(in, &other);
    if (status != STATUS_OK) return status;
    std::shared_ptr<IPeer> result;
    const ScopedAStatus outcome = peer->giveBack(other, &result);
    return Reply(out, outcome, result);
}

binder_status_t OnTell(IPeer* peer, const AParcel* in) {
    int32_t number = 0;
    const binder_status_t status = ReadAll(in, &number);
    if (status == STATUS_OK) peer->tell(number);
    return status;
}

binder_status_t OnTransact(AIBinder* binder, transaction_code_t code, const AParcel* in,
                           AParcel* out) {
    const auto peer = std::static_pointer_cast<IPeer>(::ndk::ICInterface::asInterface(binder));
    switch (code) {
        case IPeer::TRANSACTION_visit:
            return OnVisit(peer.get(), in, out);
        case IPeer::TRANSACTION_giveBack:
            return OnGiveBack(peer.get(), in, out);
        case IPeer::TRANSACTION_tell:
            return OnTell(peer.get(), in);
        default:
            return STATUS_UNKNOWN_TRANSACTION;
    }
}

}  // namespace

const char* IPeer::descriptor = "tests.IPeer";

AIBinder_Class* PeerClass() {
    static AIBinder_Class* const clazz =
            ::ndk::ICInterface::defineClass(IPeer::descriptor, OnTransact);
    return clazz;
}

AIBinder_Class* OtherPeerClass() {
    static AIBinder_Class* const clazz =
            ::ndk::ICInterface::defineClass(IPeer::descriptor, OnTransact);
    return clazz;
}

std::shared_ptr<IPeer> IPeer::fromBinder(const SpAIBinder& binder) {
    if (!AIBinder_associateClass(binder.get(), PeerClass())) return nullptr;
    if (const auto local = ::ndk::ICInterface::asInterface(binder.get()); local != nullptr) {
        return std::static_pointer_cast<IPeer>(local);
    }
    return ::ndk::SharedRefBase::make<BpPeer>(binder);
}

binder_status_t IPeer::writeToParcel(AParcel* parcel, const std::shared_ptr<IPeer>& instance) {
    const SpAIBinder binder = instance == nullptr ? SpAIBinder() : instance->asBinder();
    return AParcel_writeStrongBinder(parcel, binder.get());
}

binder_status_t IPeer::readFromParcel(const AParcel* parcel, std::shared_ptr<IPeer>* instance) {
    SpAIBinder binder;
    const binder_status_t status = AParcel_readStrongBinder(parcel, binder.getR());
    if (status == STATUS_OK) *instance = fromBinder(binder);
    return status;
}

SpAIBinder BnPeer::createBinder() {
    return SpAIBinder(AIBinder_new(PeerClass(), static_cast<::ndk::ICInterface*>(this)));
}

ScopedAStatus BpPeer::visit(const std::shared_ptr<IPeer>& in_visitor, int32_t in_number,
                            std::string* _aidl_return) {
    ScopedAParcel out;
    return ReadResult(Call(asBinder().get(), TRANSACTION_visit, 0, &out, in_visitor, in_number),
                      out, _aidl_return);
}

ScopedAStatus BpPeer::giveBack(const std::shared_ptr<IPeer>& in_other,
                               std::shared_ptr<IPeer>* _aidl_return) {
    ScopedAParcel out;
    return ReadResult(Call(asBinder().get(), TRANSACTION_giveBack, 0, &out, in_other), out,
                      _aidl_return);
}

ScopedAStatus BpPeer::tell(int32_t in_number) {
    ScopedAParcel out;
    return Call(asBinder().get(), TRANSACTION_tell, FLAG_ONEWAY, &out, in_number);
}

}  // namespace aidl::tests
