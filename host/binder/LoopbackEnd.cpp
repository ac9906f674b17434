#include "host/binder/LoopbackConnection.h"
#include "host/binder/Stability.h"

namespace zarvo::host {

bool LoopbackEnd::IsAlive() const {
    return mConnection->IsAlive();
}

std::shared_ptr<Session> LoopbackEnd::Self() {
    return {mConnection->shared_from_this(), this};
}

binder_status_t LoopbackEnd::Transact(uint64_t address, transaction_code_t code, const AParcel& in,
                                      AParcel* reply, binder_flags_t flags) {
    if (!IsAlive()) return STATUS_DEAD_OBJECT;
    auto target = mPeer->mTable.Local(address);
    if (!target) return STATUS_DEAD_OBJECT;
    auto request = std::make_shared<AParcel>(mPeer->Self());
    const binder_status_t status = Send(in, request.get());
    if (status != STATUS_OK) return status;
    if ((flags & FLAG_ONEWAY) != 0) {
        return mPeer->Queue(std::move(target), code, std::move(request), flags);
    }
    return mPeer->Call(target.Get(), code, *request, reply, flags);
}

binder_status_t LoopbackEnd::Call(LocalBinder* target, transaction_code_t code,
                                  const AParcel& request, AParcel* reply, binder_flags_t flags) {
    AParcel out(Self());
    const binder_status_t status = target->Transact(code, request, &out, flags);
    if (!IsAlive()) return STATUS_DEAD_OBJECT;
    return status == STATUS_OK ? Send(out, reply) : status;
}

binder_status_t LoopbackEnd::Queue(Ref<LocalBinder> target, transaction_code_t code,
                                   std::shared_ptr<AParcel> request, binder_flags_t flags) {
    const auto run = [this, self = Self(), target = std::move(target), code,
                      request = std::move(request), flags] {
        AParcel unsent(self);
        if (IsAlive()) target->Transact(code, *request, &unsent, flags);
    };
    if (mOneways.Post(run)) return STATUS_OK;
    return IsAlive() ? STATUS_NO_MEMORY : STATUS_DEAD_OBJECT;
}

binder_status_t LoopbackEnd::Send(const AParcel& parcel, AParcel* arrived) {
    binder_status_t status = arrived->SetBytes(parcel.Data(), parcel.Size());
    for (const AParcel::Object& object : parcel.Objects()) {
        if (status != STATUS_OK) break;
        Ref<AIBinder> translated;
        status = SendObject(object, &translated);
        arrived->AddObject(object.position, object.address, std::move(translated));
    }
    return status;
}

binder_status_t LoopbackEnd::SendObject(const AParcel::Object& object, Ref<AIBinder>* arrived) {
    if (LocalBinder* const local = object.binder->AsLocal(); local != nullptr) {
        return SendLocal(local, arrived);
    }
    *arrived = Ref<AIBinder>::Adopt(mPeer->mTable.Local(object.address).Release());
    return *arrived ? STATUS_OK : STATUS_DEAD_OBJECT;
}

binder_status_t LoopbackEnd::SendLocal(LocalBinder* object, Ref<AIBinder>* arrived) {
    uint64_t address = 0;
    const binder_status_t status = mTable.Lend(object, &address);
    if (status != STATUS_OK) return status;
    *arrived = mPeer->mTable.Receive(address, Stability::Settle(object), mPeer->Self());
    return STATUS_OK;
}

binder_status_t LoopbackEnd::Lend(AIBinder* object, uint64_t* address) {
    if (LocalBinder* const local = object->AsLocal(); local != nullptr) {
        return mTable.Lend(local, address);
    }
    const ProxyBinder* const proxy = object->AsProxy();
    if (!proxy->IsOf(this)) return STATUS_INVALID_OPERATION;
    *address = proxy->Address();
    return STATUS_OK;
}

void LoopbackEnd::TakeBack(AIBinder* object, uint64_t address) {
    if (object->AsLocal() != nullptr) mTable.TakeBack(address, 1);
}

binder_status_t LoopbackEnd::Resolve(uint64_t, int32_t, AIBinder** object) {
    *object = nullptr;
    return STATUS_BAD_VALUE;
}

void LoopbackEnd::ProxyEnded(ProxyBinder* proxy) {
    const uint64_t times = mTable.Forget(proxy);
    if (times > 0) mPeer->mTable.TakeBack(proxy->Address(), times);
}

}  // namespace zarvo::host
