#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

/** Stands in the manager's place: sees what the stream calls, and can hold it up. */
class StreamListener : public IAovStreamCallback {
  public:
    /** Run inside every onCallback() and every notice; set before the stream starts. */
    std::function<void()> inEvent, inNotice;

    void onCallback(aov_event* event) override;
    void NotifyOpen(int instanceId) override;
    void NotifyClose(int instanceId) override;

    /** Holds up events from now on; true once one is held. */
    void Block();
    bool WaitUntilBlocked();
    void Unblock();

    /** Whether so many events came, before the patience of a test ends. */
    bool WaitForEvents(size_t count);
    /** Frame ids in order, -1 for null events. */
    std::vector<int64_t> Frames();
    /** "open 1" and "close 1", in order. */
    std::vector<std::string> Notices();
    std::vector<std::thread::id> EventThreads();
    std::vector<std::thread::id> NoticeThreads();

  private:
    void Note(const char* what, int instanceId);

    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mBlocking = false;
    size_t mBlocked = 0;
    std::vector<int64_t> mFrames;
    std::vector<std::string> mNotices;
    std::vector<std::thread::id> mEventThreads, mNoticeThreads;
};

/** A test with the process's stream, quiet and with manual delivery when the test begins. */
class StreamTest : public testing::Test {
  protected:
    StreamTest();
    ~StreamTest() override;

    /** Sensor 0 at 640 × 480, 5 frames per second, services 1 and 2. */
    static user_param Param(std::shared_ptr<IAovStreamCallback> callback);
    bool Start(const std::shared_ptr<IAovStreamCallback>& callback);

    SimulatorControl& mControl = SimulatorControl::Instance();
    IAOVStream& mStream;
    std::shared_ptr<StreamListener> mListener = std::make_shared<StreamListener>();
};

}  // namespace zarvo::host
