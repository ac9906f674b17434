#include "host/stream/CameraNotices.h"

#include <android/log.h>

#include <system_error>
#include <utility>

namespace zarvo::host {

CameraNotices::~CameraNotices() {
    Shutdown();
}

void CameraNotices::SetListener(const std::shared_ptr<IAovStreamCallback>& listener) {
    const std::lock_guard lock(mMutex);
    const bool same = !mListener.owner_before(listener) && !listener.owner_before(mListener);
    if (same) return;
    mListener = listener;
    for (const int instanceId : mOpenDevices)
        PushLocked(instanceId, true);
}

void CameraNotices::Open(int instanceId) {
    const std::lock_guard lock(mMutex);
    mOpenDevices.insert(instanceId);
    PushLocked(instanceId, true);
}

void CameraNotices::Close(int instanceId) {
    const std::lock_guard lock(mMutex);
    mOpenDevices.erase(instanceId);
    PushLocked(instanceId, false);
}

void CameraNotices::PushLocked(int instanceId, bool opened) {
    if (mListener.expired() || !EnsureThreadLocked()) return;
    mNotices.push_back({instanceId, opened, mListener});
    mChanged.notify_all();
}

bool CameraNotices::EnsureThreadLocked() {
    if (mThread.joinable()) return true;
    try {
        mThread = std::thread([this] { Run(); });
    } catch (const std::system_error& error) {
        __android_log_print(ANDROID_LOG_ERROR, "SimulatedSensor", "camera notice lost: %s",
                            error.what());
        return false;
    }
    return true;
}

void CameraNotices::WaitUntilDelivered() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mNotices.empty() && !mDelivering; });
}

void CameraNotices::Shutdown() {
    std::unique_lock lock(mMutex);
    mStopping = true;
    mChanged.notify_all();
    std::thread ending = std::move(mThread);
    lock.unlock();
    if (ending.joinable()) ending.join();
    lock.lock();
    mStopping = false;
}

void CameraNotices::Run() {
    std::unique_lock lock(mMutex);
    while (true) {
        mChanged.wait(lock, [this] { return !mNotices.empty() || mStopping; });
        if (mNotices.empty()) return;
        const Notice notice = mNotices.front();
        mNotices.pop_front();
        Deliver(notice, lock);
    }
}

void CameraNotices::Deliver(const Notice& notice, std::unique_lock<std::mutex>& lock) {
    std::shared_ptr<IAovStreamCallback> listener = notice.listener.lock();
    mDelivering = true;
    lock.unlock();
    if (listener != nullptr && notice.opened) listener->NotifyOpen(notice.instanceId);
    if (listener != nullptr && !notice.opened) listener->NotifyClose(notice.instanceId);
    listener.reset();
    lock.lock();
    mDelivering = false;
    mChanged.notify_all();
}

}  // namespace zarvo::host
