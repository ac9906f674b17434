#include "host/stream/DeliveryRun.h"

#include <system_error>
#include <utility>

namespace zarvo::host {

using std::chrono::steady_clock;

DeliveryRun::DeliveryRun(Period period, std::shared_ptr<IAovStreamCallback> callback, Source source)
    : mPeriod(period), mSource(std::move(source)), mCallback(std::move(callback)) {}

DeliveryRun::~DeliveryRun() {
    Stop();
    Join();
}

bool DeliveryRun::Launch() {
    mDue = steady_clock::now();
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
    if (OverLocked() || !ByRequest()) return false;
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
        aov_event* const event = mSource.render(*record);
        if (!MayBegin()) break;
        mCallback->onCallback(event);
        NoteDelivered();
    }
    NoteEnd();
    mCallback.reset();
    mEnded.store(true);
}

DeliveryRun::Time DeliveryRun::NextDue() {
    mDue += mPeriod;
    const Period late = mSource.lateness();
    // A reader that takes long misses the frames that are due meanwhile; the pace stays.
    const auto behind = steady_clock::now() - (mDue + late);
    if (behind > Period::zero()) mDue += (behind / mPeriod + 1) * mPeriod;
    return mDue + late;
}

bool DeliveryRun::AwaitTurn() {
    const Time due = ByRequest() ? Time() : NextDue();
    std::unique_lock lock(mMutex);
    if (ByRequest()) {
        mChanged.wait(lock, [this] { return OverLocked() || mDelivered < mRequested; });
    } else {
        mChanged.wait_until(lock, due, [this] { return OverLocked(); });
    }
    return !OverLocked();
}

bool DeliveryRun::MayBegin() {
    const std::lock_guard lock(mMutex);
    if (OverLocked()) return false;
    if (mStopped) --mLateEvents;
    return true;
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

}  // namespace zarvo::host
