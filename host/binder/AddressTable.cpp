#include "host/binder/AddressTable.h"

namespace zarvo::host {

namespace {

constexpr size_t kMostAddresses = 100'000;

}  // namespace

binder_status_t AddressTable::Lend(LocalBinder* object, uint64_t* address) {
    const std::lock_guard lock(mMutex);
    if (mClosed) return STATUS_DEAD_OBJECT;
    if (const auto known = mAddresses.find(object); known != mAddresses.end()) {
        *address = known->second;
        ++mLent.at(*address).times;
        return STATUS_OK;
    }
    if (mLent.size() >= kMostAddresses) return STATUS_NO_MEMORY;
    *address = NewAddress();
    mAddresses.emplace(object, *address);
    mLent.emplace(*address, Lent{Ref<LocalBinder>::Share(object), 1});
    return STATUS_OK;
}

void AddressTable::TakeBack(uint64_t address, uint64_t times) {
    Ref<LocalBinder> ended;
    const std::lock_guard lock(mMutex);
    const auto lent = mLent.find(address);
    if (lent == mLent.end() || times > lent->second.times) return;
    lent->second.times -= times;
    if (lent->second.times > 0) return;
    ended = std::move(lent->second.object);
    mAddresses.erase(ended.Get());
    mLent.erase(lent);
}

Ref<LocalBinder> AddressTable::Local(uint64_t address) const {
    const std::lock_guard lock(mMutex);
    const auto lent = mLent.find(address);
    return lent == mLent.end() ? Ref<LocalBinder>() : lent->second.object;
}

Ref<AIBinder> AddressTable::Receive(uint64_t address, int32_t stability,
                                    std::shared_ptr<Session> session) {
    const std::lock_guard lock(mMutex);
    const auto known = mReceived.find(address);
    if (known == mReceived.end()) {
        auto proxy = Ref<AIBinder>::Adopt(new ProxyBinder(std::move(session), address, stability));
        mReceived.emplace(address, Received{WeakRef(proxy->Refs()), 1});
        return proxy;
    }
    Received& received = known->second;
    ++received.times;
    auto proxy = received.proxy.Promote();
    if (!proxy) {
        // The old one is about to end; what it was sent for is the new one's to give back.
        proxy = Ref<AIBinder>::Adopt(new ProxyBinder(std::move(session), address, stability));
        received.proxy = WeakRef(proxy->Refs());
    }
    return proxy;
}

uint64_t AddressTable::Forget(const ProxyBinder* proxy) {
    const std::lock_guard lock(mMutex);
    const auto received = mReceived.find(proxy->Address());
    if (received == mReceived.end() || received->second.proxy.Refs() != proxy->Refs()) return 0;
    const uint64_t times = received->second.times;
    mReceived.erase(received);
    return times;
}

AddressTable::Remains AddressTable::Close() {
    Remains remains;
    const std::lock_guard lock(mMutex);
    mClosed = true;
    for (auto& [address, lent] : mLent)
        remains.locals.push_back(std::move(lent.object));
    for (const auto& [address, received] : mReceived) {
        if (auto proxy = received.proxy.Promote()) remains.proxies.push_back(std::move(proxy));
    }
    mLent.clear();
    mAddresses.clear();
    return remains;
}

uint64_t AddressTable::NewAddress() {
    uint64_t address = 0;
    do {
        address = static_cast<uint64_t>(mSide) | uint64_t{mNextNumber++} << 32;
    } while (mLent.contains(address));
    return address;
}

}  // namespace zarvo::host
