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
        PushLocked(Kind::kOpen, instanceId);
}

void CameraNotices::Open(int instanceId) {
    const std::lock_guard lock(mMutex);
    mOpenDevices.insert(instanceId);
    PushLocked(Kind::kOpen, instanceId);
}

void CameraNotices::Close(int instanceId) {
    const std::lock_guard lock(mMutex);
    mOpenDevices.erase(instanceId);
    PushLocked(Kind::kClose, instanceId);
}

void CameraNotices::Storm(int instanceId, uint32_t cycles) {
    const std::lock_guard lock(mMutex);
    // What is open closes first: a storm may have no cycle, or be cut short before its first.
    if (mOpenDevices.erase(instanceId) != 0) PushLocked(Kind::kClose, instanceId);
    PushLocked(Kind::kStorm, instanceId, cycles);
}

void CameraNotices::PushLocked(Kind kind, int instanceId, uint32_t cycles) {
    if (mListener.expired() || !EnsureThreadLocked()) return;
    mNotices.push_back({kind, instanceId, cycles, mListener});
    mChanged.notify_all();
}

bool CameraNotices::EnsureThreadLocked() {
    if (mServing) return true;
    JoinServedLocked();
    try {
        mThread = std::thread([this] { Run(); });
        mServing = true;
    } catch (const std::system_error& error) {
        __android_log_print(ANDROID_LOG_ERROR, "SimulatedSensor", "camera notice lost: %s",
                            error.what());
        return false;
    }
    return true;
}

std::vector<int> CameraNotices::OpenDevices() const {
    const std::lock_guard lock(mMutex);
    return {mOpenDevices.begin(), mOpenDevices.end()};
}

void CameraNotices::WaitUntilDelivered() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mNotices.empty() && !mDelivering; });
}

void CameraNotices::Shutdown() {
    std::unique_lock lock(mMutex);
    mStopping = true;
    mChanged.notify_all();
    mChanged.wait(lock, [this] { return !mServing; });
    mStopping = false;
    JoinServedLocked();
}

void CameraNotices::JoinServedLocked() {
    // The thread takes no lock any more, so this does not wait for long.
    if (mThread.joinable()) mThread.join();
}

void CameraNotices::Run() {
    std::unique_lock lock(mMutex);
    while (true) {
        mChanged.wait(lock, [this] { return !mNotices.empty() || mStopping; });
        if (mNotices.empty()) break;
        const Notice notice = mNotices.front();
        mNotices.pop_front();
        mDelivering = true;
        lock.unlock();
        Deliver(notice);
        lock.lock();
        mDelivering = false;
        mChanged.notify_all();
    }
    mServing = false;
    mChanged.notify_all();
}

void CameraNotices::Deliver(const Notice& notice) {
    switch (notice.kind) {
        case Kind::kOpen:
            return notice.TellOpen();
        case Kind::kClose:
            return notice.TellClose();
        case Kind::kStorm:
            return DeliverStorm(notice);
    }
}

void CameraNotices::DeliverStorm(const Notice& notice) {
    for (uint32_t cycle = 0; cycle < notice.cycles && !Stopping(); ++cycle) {
        notice.TellOpen();
        notice.TellClose();
    }
}

bool CameraNotices::Stopping() {
    const std::lock_guard lock(mMutex);
    return mStopping;
}

void CameraNotices::Notice::TellOpen() const {
    if (const auto held = listener.lock()) held->NotifyOpen(instanceId);
}

void CameraNotices::Notice::TellClose() const {
    if (const auto held = listener.lock()) held->NotifyClose(instanceId);
}

}  // namespace zarvo::host
