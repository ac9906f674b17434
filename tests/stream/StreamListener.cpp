#include "tests/stream/StreamListener.h"

#include <utility>

#include "tests/support/LogRecorder.h"

namespace zarvo::host {

using test::kPatience;

void StreamListener::onCallback(aov_event* event) {
    {
        std::unique_lock lock(mMutex);
        mFrames.push_back(event == nullptr ? -1 : int64_t{event->frame_id});
        mEventThreads.push_back(std::this_thread::get_id());
        ++mBlocked;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return !mBlocking; });
        --mBlocked;
    }
    if (inEvent) inEvent(event);
}

void StreamListener::Note(std::string notice) {
    {
        const std::lock_guard lock(mMutex);
        mNotices.push_back(std::move(notice));
        mNoticeThreads.push_back(std::this_thread::get_id());
    }
    if (inNotice) inNotice();
}

void StreamListener::SetBlocking(bool blocking) {
    const std::lock_guard lock(mMutex);
    mBlocking = blocking;
    mChanged.notify_all();
}

bool StreamListener::WaitUntilBlocked() {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [this] { return mBlocked > 0; });
}

bool StreamListener::WaitForEvents(size_t count) {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, kPatience, [&] { return mFrames.size() >= count; });
}

user_param Param(std::shared_ptr<IAovStreamCallback> callback, int32_t frameRate, int32_t width,
                 int32_t height) {
    user_param param{};
    param.frameRate = frameRate;
    param.frameWidth = width;
    param.frameHeight = height;
    param.serviceType = 3;
    param.AovStreamCallback = std::move(callback);
    return param;
}

StreamTest::~StreamTest() {
    mListener->SetBlocking(false);
    mControl.Shutdown();
}

bool StreamTest::Start(const std::shared_ptr<IAovStreamCallback>& callback, int32_t frameRate) {
    user_param param = Param(callback, frameRate);
    return mStream.start(&param);
}

void StreamTest::StartAndHoldUpAnEvent() {
    mListener->SetBlocking(true);
    ASSERT_TRUE(Start(mListener));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(mControl.RequestFrame());
    ASSERT_TRUE(mListener->WaitUntilBlocked());
}

}  // namespace zarvo::host
