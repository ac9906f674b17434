#include "host/binder/rpc/Channels.h"

#include <algorithm>
#include <utility>

namespace zarvo::host {

void Channels::SetGrowth(Open open, IsTaken isTaken, size_t most) {
    const std::lock_guard lock(mMutex);
    mOpen = std::move(open);
    mIsTaken = std::move(isTaken);
    mMost = most;
}

bool Channels::Add(Shared connection, const std::function<bool()>& announce) {
    const std::lock_guard lock(mMutex);
    if (mClosed) connection->Shutdown();
    if (mClosed || !announce()) return false;
    mChannels.push_back({std::move(connection), {}, 0});
    mChanged.notify_one();
    return true;
}

bool Channels::IsEmpty() const {
    const std::lock_guard lock(mMutex);
    return mChannels.empty();
}

void Channels::LimitReceiveTime(Deadline deadline) const {
    const std::lock_guard lock(mMutex);
    for (const Channel& channel : mChannels)
        channel.connection->LimitReceiveTime(deadline);
}

binder_status_t Channels::Acquire(bool rotate, const Connection* nested, Shared* connection) {
    std::unique_lock lock(mMutex);
    while (!mClosed) {
        Channel* channel = FindLocked(nested);
        if (channel == nullptr) channel = FreeLocked(rotate);
        if (channel != nullptr) {
            *connection = TakeLocked(*channel);
            return STATUS_OK;
        }
        if (mChannels.empty() && mOpening == 0) return STATUS_WOULD_BLOCK;
        if (MayGrowLocked()) {
            *connection = Grow(lock);
            if (*connection != nullptr) return STATUS_OK;
        } else if (IsHolderLocked()) {
            // Inside a call of its own, where it must not wait for itself.
            return STATUS_WOULD_BLOCK;
        } else {
            mChanged.wait(lock);
        }
    }
    return STATUS_DEAD_OBJECT;
}

Channels::Shared Channels::TryAcquire() {
    const std::lock_guard lock(mMutex);
    if (mClosed) return nullptr;
    Channel* const free = FreeLocked(false);
    return free == nullptr ? nullptr : TakeLocked(*free);
}

void Channels::Release(const Shared& connection) {
    const std::lock_guard lock(mMutex);
    Channel* const channel = FindLocked(connection.get());
    if (channel == nullptr || --channel->uses > 0) return;
    channel->holder = {};
    mChanged.notify_one();
}

void Channels::Close() {
    const std::lock_guard lock(mMutex);
    mClosed = true;
    for (const Channel& channel : mChannels)
        channel.connection->Shutdown();
    // Who uses one keeps it; the others' sockets are closed here.
    mChannels.clear();
    mChanged.notify_all();
}

Channels::Channel* Channels::FindLocked(const Connection* connection) {
    const auto found = std::find_if(mChannels.begin(), mChannels.end(), [&](const auto& channel) {
        return channel.connection.get() == connection;
    });
    return found == mChannels.end() ? nullptr : &*found;
}

bool Channels::IsHolderLocked() const {
    return std::any_of(mChannels.begin(), mChannels.end(), [](const auto& channel) {
        return channel.holder == std::this_thread::get_id();
    });
}

Channels::Channel* Channels::FreeLocked(bool rotate) {
    const size_t begin = rotate && !mChannels.empty() ? mNext++ % mChannels.size() : 0;
    for (size_t i = 0; i < mChannels.size(); ++i) {
        Channel& channel = mChannels[(begin + i) % mChannels.size()];
        if (channel.uses == 0) return &channel;
    }
    return nullptr;
}

Channels::Shared Channels::TakeLocked(Channel& channel) {
    channel.holder = std::this_thread::get_id();
    ++channel.uses;
    return channel.connection;
}

bool Channels::MayGrowLocked() const {
    return mOpen != nullptr && mChannels.size() + mOpening < mMost;
}

Channels::Shared Channels::Grow(std::unique_lock<std::mutex>& lock) {
    ++mOpening;
    Shared taken = OpenTaken(lock);
    --mOpening;
    // The other end has no more to give; what there is must do.
    if (taken == nullptr) mMost = std::min(mMost, mChannels.size());
    mChanged.notify_all();
    return taken;
}

Channels::Shared Channels::OpenTaken(std::unique_lock<std::mutex>& lock) {
    const Open open = mOpen;
    const IsTaken isTaken = mIsTaken;
    lock.unlock();
    Shared opened = open();
    lock.lock();
    if (opened == nullptr || mClosed) return nullptr;
    // Listed before it is known to be good, so that Close ends the wait for that.
    mChannels.push_back({opened, std::this_thread::get_id(), 1});
    lock.unlock();
    const bool taken = isTaken(*opened);
    lock.lock();
    if (taken && !mClosed) return opened;
    std::erase_if(mChannels, [&](const auto& channel) { return channel.connection == opened; });
    return nullptr;
}

}  // namespace zarvo::host
