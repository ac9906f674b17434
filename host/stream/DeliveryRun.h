#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::host {

/**
 * One run of the stream, from a start to its stop: a thread that renders each frame into the
 * run's one record and hands it to the callback.
 *
 * Stop() does not wait for a callback in flight, so the thread may outlive the run as its callers
 * see it: whoever owns the run keeps it until Ended(), or waits with Join() or by destroying it.
 * The callback is let go by the thread itself, at its end. Every operation but Launch() and
 * Join() may be called from any thread, the callback's too.
 */
class DeliveryRun {
  public:
    /** Renders the next frame into the record and gives what is to be delivered. */
    using Render = std::function<aov_event*(aov_event& record)>;
    /** Time between frames; zero lets frames be delivered by request. */
    using Period = std::chrono::nanoseconds;

    DeliveryRun(Period period, std::shared_ptr<IAovStreamCallback> callback, Render render);
    ~DeliveryRun();
    DeliveryRun(const DeliveryRun&) = delete;
    DeliveryRun& operator=(const DeliveryRun&) = delete;

    /** Starts the thread, once; false when there can be none. */
    bool Launch();
    /** After its return no further callback begins. */
    void Stop();

    /** Orders one more frame; false when the run is stopped or goes by the clock. */
    bool RequestFrame();
    /** The same, and waits until the callback returned; false when there was none. */
    bool DeliverOne();

    /** Whether the thread has nothing left to do, so that Join() does not wait for a callback. */
    bool Ended() const { return mEnded.load(); }
    /** Waits for the thread, and so for a callback in flight. */
    void Join();

  private:
    void Run();
    /** Waits until the next frame is due; false when the run is stopped. */
    bool AwaitTurn();
    /** Whether the callback may still be called. */
    bool MayBegin();
    void NoteDelivered();
    void NoteEnd();

    bool ByRequest() const { return mPeriod == Period::zero(); }

    const Period mPeriod;
    const Render mRender;
    /** Of the thread, once it runs. */
    std::shared_ptr<IAovStreamCallback> mCallback;

    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mStopped = false;
    bool mNoMoreFrames = false;
    uint64_t mRequested = 0;
    uint64_t mDelivered = 0;
    std::chrono::steady_clock::time_point mDeadline;

    std::atomic<bool> mEnded{false};
    std::thread mThread;
};

}  // namespace zarvo::host
