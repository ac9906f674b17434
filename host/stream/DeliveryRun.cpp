#include "host/stream/DeliveryRun.h"

#include <system_error>
#include <utility>

namespace zarvo::host {

DeliveryRun::~DeliveryRun() {
    Stop();
    Join();
}

bool DeliveryRun::Launch() {
    try {
        mThread = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void DeliveryRun::Stop(uint32_t lateEvents) {
    const std::lock_guard lock(mMutex);
    mStopped = true;
    mLateEvents = lateEvents;
    mChanged.notify_all();
}

bool DeliveryRun::RequestFrame() {
    const std::lock_guard lock(mMutex);
    if (OverLocked() || mNoMoreFrames || !ByRequest()) return false;
    ++mRequested;
    mChanged.notify_all();
    return true;
}

bool DeliveryRun::DeliverOne() {
    std::unique_lock lock(mMutex);
    if (OverLocked() || !ByRequest()) return false;
    const uint64_t mine = ++mRequested;
    mChanged.notify_all();
    mChanged.wait(lock, [&] { return mDelivered >= mine || mNoMoreFrames; });
    return mDelivered >= mine;
}

void DeliveryRun::Join() {
    if (mThread.joinable()) mThread.join();
}

void DeliveryRun::Run() {
    const auto record = std::make_unique<aov_event>();
    while (AwaitTurn()) {
        const std::optional<aov_event*> event = mSource.render(*record);
        if (!event || !MayBegin()) break;
        Deliver(*event);
    }
    NoteEnd();
    // Until then it is heard by who keeps no callback: the camera's notices.
    AwaitStop();
    mCallback.reset();
    mEnded.store(true);
}

bool DeliveryRun::AwaitTurn() {
    const std::optional<Time> due = ByRequest() ? Time() : mSource.nextDue();
    if (!due) return false;
    std::unique_lock lock(mMutex);
    if (ByRequest()) {
        mChanged.wait(lock, [this] { return OverLocked() || mDelivered < mRequested; });
    } else {
        mChanged.wait_until(lock, *due, [this] { return OverLocked(); });
    }
    return !OverLocked();
}

bool DeliveryRun::MayBegin() {
    const std::lock_guard lock(mMutex);
    if (OverLocked()) return false;
    if (mStopped) --mLateEvents;
    return true;
}

void DeliveryRun::Deliver(aov_event* event) {
    if (mSource.claim != nullptr && !mSource.claim()) return;
    mCallback->onCallback(event);
    NoteDelivered();
}

void DeliveryRun::NoteDelivered() {
    const std::lock_guard lock(mMutex);
    ++mDelivered;
    mChanged.notify_all();
}

void DeliveryRun::NoteEnd() {
    const std::lock_guard lock(mMutex);
    mNoMoreFrames = true;
    mChanged.notify_all();
}

void DeliveryRun::AwaitStop() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mStopped; });
}

}  // namespace zarvo::host
