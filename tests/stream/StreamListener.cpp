#include "tests/stream/StreamListener.h"

#include <utility>

#include "tests/support/LogRecorder.h"

namespace zarvo::host {

using test::kPatience;

void StreamListener::onCallback(aov_event* event) {
    {
        const std::lock_guard lock(mMutex);
        mFrames.push_back(event == nullptr ? -1 : int64_t{event->frame_id});
        mEventThreads.push_back(std::this_thread::get_id());
        mChanged.notify_all();
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

bool StreamTest::Start(const std::shared_ptr<IAovStreamCallback>& callback, int32_t frameRate) {
    user_param param = Param(callback, frameRate);
    return mStream.start(&param);
}

}  // namespace zarvo::host
