#include "host/binder/rpc/AddressTable.h"

#include <algorithm>
#include <limits>

namespace zarvo::host {

namespace {

uint32_t Amount(uint64_t times) {
    return static_cast<uint32_t>(std::min<uint64_t>(times, std::numeric_limits<uint32_t>::max()));
}

}  // namespace

binder_status_t AddressTable::Lend(LocalBinder* object, uint64_t* address) {
    const std::lock_guard lock(mMutex);
    if (mClosed) return STATUS_DEAD_OBJECT;
    const auto node = NodeOfLocal(object);
    if (node == mNodes.end()) return STATUS_NO_MEMORY;
    CountSent(node->second, object);
    *address = node->first;
    return STATUS_OK;
}

binder_status_t AddressTable::LendBack(const ProxyBinder* proxy) {
    return BeginCall(proxy->Address(), false) ? STATUS_OK : STATUS_DEAD_OBJECT;
}

std::optional<AddressTable::CountedCall> AddressTable::BeginCall(uint64_t address, bool oneway) {
    Ref<AIBinder> proxy;
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end()) return std::nullopt;
    proxy = node->second.object.Promote();
    CountSent(node->second, proxy.Get());
    CountedCall call{.asyncNumber = 0, .acknowledged = node->second.acknowledged};
    if (oneway) call.asyncNumber = node->second.asyncNumber++;
    return call;
}

void AddressTable::CountSent(Node& node, AIBinder* object) {
    ++node.sent;
    if (!node.held) node.held = Ref<AIBinder>::Share(object);
}

void AddressTable::TakeBack(uint64_t address) {
    Ref<AIBinder> ended;
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node != mNodes.end()) ended = CountBack(node, 1);
}

void AddressTable::TakeAcknowledgement(uint64_t address, uint64_t times) {
    Ref<AIBinder> ended;
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end()) return;
    node->second.acknowledged += times;
    ended = CountBack(node, times);
}

Ref<AIBinder> AddressTable::CountBack(Nodes::iterator node, uint64_t times) {
    uint64_t& sent = node->second.sent;
    // For an object of the other end more may come than was sent: for calls that failed before
    // it was last forgotten.
    if (times > sent && IsOwn(node->first)) return {};
    sent -= std::min(times, sent);
    node->second.failed = std::min(node->second.failed, sent);
    return LetGoIfDone(node);
}

void AddressTable::NoteFailure(uint64_t address, const CountedCall& call) {
    Ref<AIBinder> ended;
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end() || node->second.failed == node->second.sent) return;
    // It may have been for this call. If not, the object is only held for longer.
    if (node->second.acknowledged != call.acknowledged) return;
    ++node->second.failed;
    ended = LetGoIfDone(node);
}

Ref<AIBinder> AddressTable::LetGoIfDone(Nodes::iterator node) {
    if (node->second.sent > node->second.failed) return {};
    auto ended = std::move(node->second.held);
    EraseIfDone(node);
    return ended;
}

binder_status_t AddressTable::Receive(uint64_t address, int32_t stability,
                                      const std::shared_ptr<Session>& session,
                                      Ref<AIBinder>* object) {
    if (!wire::IsAddress(address)) return STATUS_BAD_VALUE;
    const std::lock_guard lock(mMutex);
    if (mClosed) return STATUS_DEAD_OBJECT;
    auto node = mNodes.find(address);
    if (node != mNodes.end()) *object = node->second.object.Promote();
    if (IsOwn(address)) {
        if (!*object) return STATUS_BAD_VALUE;
    } else if (node == mNodes.end()) {
        if (mNodes.size() >= wire::kMostAddresses) return STATUS_NO_MEMORY;
        *object = NewProxy(address, stability, session);
        node = mNodes.emplace(address, Node(object->Get())).first;
        mUsed = true;
    } else if (!*object) {
        // The old one is about to end; what it was sent for is the new one's to acknowledge.
        *object = NewProxy(address, stability, session);
        node->second.object = WeakRef((*object)->Refs());
    }
    ++node->second.received;
    return STATUS_OK;
}

Ref<AIBinder> AddressTable::NewProxy(uint64_t address, int32_t stability,
                                     const std::shared_ptr<Session>& session) {
    return Ref<AIBinder>::Adopt(new ProxyBinder(session, address, stability));
}

Ref<LocalBinder> AddressTable::BeginServe(uint64_t address) {
    Ref<AIBinder> object;
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end() || !IsOwn(address)) return {};
    object = node->second.object.Promote();
    if (!object) return {};
    ++node->second.received;
    return Ref<LocalBinder>::Adopt(object.Release()->AsLocal());
}

uint32_t AddressTable::Acknowledge(uint64_t address) {
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end()) return 0;
    const uint32_t amount = Amount(node->second.received);
    node->second.received -= amount;
    EraseIfDone(node);
    return amount;
}

uint32_t AddressTable::Forget(const ProxyBinder* proxy) {
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(proxy->Address());
    if (node == mNodes.end() || node->second.object.Refs() != proxy->Refs()) return 0;
    const uint32_t amount = Amount(std::exchange(node->second.received, 0));
    EraseIfDone(node);
    return amount;
}

bool AddressTable::Queue(uint64_t address, uint64_t asyncNumber, Oneway call) {
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end()) return true;
    // The one that runs has had its turn, too.
    if (asyncNumber < node->second.asyncNumber + (node->second.runsOneway ? 1 : 0)) return true;
    auto& waiting = node->second.waiting;
    const size_t bytes = call.request->Size();
    if (waiting.size() >= wire::kMostWaitingOneways) return false;
    if (mWaitingBytes > wire::kMostWaitingBytes - bytes) return false;
    if (waiting.try_emplace(asyncNumber, std::move(call)).second) mWaitingBytes += bytes;
    return true;
}

std::optional<AddressTable::Oneway> AddressTable::NextOneway(uint64_t address) {
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end() || node->second.runsOneway) return std::nullopt;
    auto& waiting = node->second.waiting;
    if (waiting.empty() || waiting.begin()->first != node->second.asyncNumber) return std::nullopt;
    node->second.runsOneway = true;
    mWaitingBytes -= waiting.begin()->second.request->Size();
    // Part of a node that ends here: nothing would be moved by itself.
    // cppcheck-suppress returnStdMoveLocal
    return std::move(waiting.extract(waiting.begin()).mapped());
}

void AddressTable::EndOneway(uint64_t address) {
    const std::lock_guard lock(mMutex);
    const auto node = mNodes.find(address);
    if (node == mNodes.end()) return;
    node->second.runsOneway = false;
    ++node->second.asyncNumber;
}

bool AddressTable::CloseIfUsedUp() {
    const std::lock_guard lock(mMutex);
    if (!mUsed || !mNodes.empty()) return false;
    mClosed = true;
    return true;
}

AddressTable::Remains AddressTable::Close() {
    Remains remains;
    const std::lock_guard lock(mMutex);
    mClosed = true;
    for (auto& [address, node] : mNodes) {
        if (!IsOwn(address)) {
            if (auto proxy = node.object.Promote()) remains.proxies.push_back(std::move(proxy));
        }
        if (node.held) remains.held.push_back(std::move(node.held));
        for (auto& [number, call] : node.waiting)
            remains.oneways.push_back(std::move(call));
    }
    mNodes.clear();
    mLocals.clear();
    return remains;
}

bool AddressTable::IsOwn(uint64_t address) const {
    return ((address & wire::kAddressOfServer) != 0) == (mSide == Side::kServer);
}

uint64_t AddressTable::NewAddress() {
    const uint64_t options =
            wire::kAddressCreated | (mSide == Side::kServer ? wire::kAddressOfServer : 0);
    uint64_t address = 0;
    do {
        address = options | uint64_t{mNextNumber++} << 32U;
    } while (mNodes.contains(address));
    return address;
}

AddressTable::Nodes::iterator AddressTable::NodeOfLocal(LocalBinder* object) {
    if (const auto known = mLocals.find(object->Refs()); known != mLocals.end()) {
        return mNodes.find(known->second);
    }
    if (mNodes.size() >= wire::kMostAddresses) return mNodes.end();
    const uint64_t address = NewAddress();
    mLocals.emplace(object->Refs(), address);
    mUsed = true;
    return mNodes.emplace(address, Node(object)).first;
}

void AddressTable::EraseIfDone(Nodes::iterator node) {
    const Node& state = node->second;
    if (state.sent > state.failed || state.received > 0 || !state.waiting.empty()) return;
    if (IsOwn(node->first)) mLocals.erase(node->second.object.Refs());
    mNodes.erase(node);
}

}  // namespace zarvo::host
