#include "tests/stream/StreamListener.h"

#include <utility>

#include "tests/support/LogRecorder.h"

namespace zarvo::host {

using test::kPatience;

void StreamListener::onCallback(aov_event* event) {
    {
        std::unique_lock lock(mMutex);
        mFrames.push_back(event == nullptr ? -1 : event->frame_id);
        mEventThreads.push_back(std::this_thread::get_id());
        ++mBlocked;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return !mBlocking; });
        --mBlocked;
    }
    if (inEvent) inEvent();
}

void StreamListener::NotifyOpen(int instanceId) {
    Note("open ", instanceId);
}

void StreamListener::NotifyClose(int instanceId) {
    Note("close ", instanceId);
}

void StreamListener::Note(const char* what, int instanceId) {
    {
        const std::lock_guard lock(mMutex);
        mNotices.push_back(what + std::to_string(instanceId));
        mNoticeThreads.push_back(std::this_thread::get_id());
    }
    if (inNotice) inNotice();
}

void StreamListener::Block() {
    const std::lock_guard lock(mMutex);
    mBlocking = true;
}

bool StreamListener::WaitUntilBlocked() {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [this] { return mBlocked > 0; });
}

void StreamListener::Unblock() {
    const std::lock_guard lock(mMutex);
    mBlocking = false;
    mChanged.notify_all();
}

bool StreamListener::WaitForEvents(size_t count) {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [&] { return mFrames.size() >= count; });
}

std::vector<int64_t> StreamListener::Frames() {
    const std::lock_guard lock(mMutex);
    return mFrames;
}

std::vector<std::string> StreamListener::Notices() {
    const std::lock_guard lock(mMutex);
    return mNotices;
}

std::vector<std::thread::id> StreamListener::EventThreads() {
    const std::lock_guard lock(mMutex);
    return mEventThreads;
}

std::vector<std::thread::id> StreamListener::NoticeThreads() {
    const std::lock_guard lock(mMutex);
    return mNoticeThreads;
}

StreamTest::StreamTest() : mStream(*IAOVStream::createInstance()) {
    mControl.SetManualDelivery(true);
}

StreamTest::~StreamTest() {
    mListener->Unblock();
    mControl.Shutdown();
}

user_param StreamTest::Param(std::shared_ptr<IAovStreamCallback> callback) {
    user_param param{};
    param.sensorId = 0;
    param.frameRate = 5;
    param.frameWidth = 640;
    param.frameHeight = 480;
    param.serviceType = 3;
    param.AovStreamCallback = std::move(callback);
    return param;
}

bool StreamTest::Start(const std::shared_ptr<IAovStreamCallback>& callback) {
    user_param param = Param(callback);
    return mStream.start(&param);
}

}  // namespace zarvo::host
