#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "host/stream/SimulatorControl.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::host {

/** Stands in the manager's place: sees what the stream calls, and can do something then. */
class StreamListener : public IAovStreamCallback {
  public:
    /** Run inside every onCallback() and every notice; set before the stream starts. */
    std::function<void(const aov_event* event)> inEvent;
    std::function<void()> inNotice;

    void onCallback(aov_event* event) override {
        {
            const std::lock_guard lock(mMutex);
            mFrames.push_back(event == nullptr ? -1 : int64_t{event->frame_id});
            mChanged.notify_all();
        }
        if (inEvent) inEvent(event);
    }
    void NotifyOpen(int instanceId) override { Note("open " + std::to_string(instanceId)); }
    void NotifyClose(int instanceId) override { Note("close " + std::to_string(instanceId)); }

    /** Whether so many events came, before the patience of a test ends. */
    bool WaitForEvents(size_t count) {
        std::unique_lock lock(mMutex);
        return mChanged.wait_for(lock, test::kPatience, [&] { return mFrames.size() >= count; });
    }

    /** Frame ids in order, -1 for null events. */
    std::vector<int64_t> Frames() { return Get(mFrames); }
    /** "open 1" and "close 1", in order. */
    std::vector<std::string> Notices() { return Get(mNotices); }
    std::vector<std::thread::id> NoticeThreads() { return Get(mNoticeThreads); }

  private:
    void Note(std::string notice) {
        {
            const std::lock_guard lock(mMutex);
            mNotices.push_back(std::move(notice));
            mNoticeThreads.push_back(std::this_thread::get_id());
        }
        if (inNotice) inNotice();
    }
    template <typename T>
    T Get(const T& member) {
        const std::lock_guard lock(mMutex);
        return member;
    }

    std::mutex mMutex;
    std::condition_variable mChanged;
    std::vector<int64_t> mFrames;
    std::vector<std::string> mNotices;
    std::vector<std::thread::id> mNoticeThreads;
};

/** What starts sensor 0 with services 1 and 2. */
inline user_param Param(std::shared_ptr<IAovStreamCallback> callback, int32_t frameRate = 5,
                        int32_t width = 640, int32_t height = 480) {
    user_param param{};
    param.frameRate = frameRate;
    param.frameWidth = width;
    param.frameHeight = height;
    param.serviceType = 3;
    param.AovStreamCallback = std::move(callback);
    return param;
}

/** A test with the process's stream, quiet and with manual delivery when the test begins. */
class StreamTest : public testing::Test {
  protected:
    StreamTest() : mStream(*IAOVStream::createInstance()) { mControl.SetManualDelivery(true); }
    ~StreamTest() override { mControl.Shutdown(); }

    bool Start(const std::shared_ptr<IAovStreamCallback>& callback, int32_t frameRate = 5) {
        user_param param = Param(callback, frameRate);
        return mStream.start(&param);
    }

    SimulatorControl& mControl = SimulatorControl::Instance();
    IAOVStream& mStream;
    std::shared_ptr<StreamListener> mListener = std::make_shared<StreamListener>();
};

}  // namespace zarvo::host
