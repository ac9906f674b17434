#include "host/stream/DeliveryRun.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace zarvo::host {

using std::chrono::steady_clock;

DeliveryRun::DeliveryRun(Period period, std::shared_ptr<IAovStreamCallback> callback, Render render)
    : mPeriod(period), mRender(std::move(render)), mCallback(std::move(callback)) {}

DeliveryRun::~DeliveryRun() {
    Stop();
    Join();
}

bool DeliveryRun::Launch() {
    mDeadline = steady_clock::now() + mPeriod;
    try {
        mThread = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void DeliveryRun::Stop() {
    const std::lock_guard lock(mMutex);
    mStopped = true;
    mChanged.notify_all();
}

bool DeliveryRun::RequestFrame() {
    const std::lock_guard lock(mMutex);
    if (mStopped || !ByRequest()) return false;
    ++mRequested;
    mChanged.notify_all();
    return true;
}

bool DeliveryRun::DeliverOne() {
    std::unique_lock lock(mMutex);
    if (mStopped || !ByRequest()) return false;
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
        aov_event* const event = mRender(*record);
        if (!MayBegin()) break;
        mCallback->onCallback(event);
        NoteDelivered();
    }
    NoteEnd();
    mCallback.reset();
    mEnded.store(true);
}

bool DeliveryRun::AwaitTurn() {
    std::unique_lock lock(mMutex);
    if (ByRequest()) {
        mChanged.wait(lock, [this] { return mStopped || mDelivered < mRequested; });
    } else {
        mChanged.wait_until(lock, mDeadline, [this] { return mStopped; });
        // A sensor whose reader was late drops what was due meanwhile; it does not catch up.
        mDeadline = std::max(mDeadline + mPeriod, steady_clock::now());
    }
    return !mStopped;
}

bool DeliveryRun::MayBegin() {
    const std::lock_guard lock(mMutex);
    return !mStopped;
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
