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
    /** Time between frames; zero lets frames be delivered by request. */
    using Period = std::chrono::nanoseconds;
    /** Where the frames come from; asked by the run's thread. */
    struct Source {
        /** How late the next frame is; less than a period. */
        std::function<Period()> lateness;
        /** Renders that frame into the record and gives what is to be delivered. */
        std::function<aov_event*(aov_event& record)> render;
    };

    DeliveryRun(Period period, std::shared_ptr<IAovStreamCallback> callback, Source source);
    ~DeliveryRun();
    DeliveryRun(const DeliveryRun&) = delete;
    DeliveryRun& operator=(const DeliveryRun&) = delete;

    /** Starts the thread, once; false when there can be none. */
    bool Launch();
    /** After its return no further callback begins, but for `lateEvents` of them: a fault. A second
     * call says anew how many. */
    void Stop(uint32_t lateEvents = 0);

    /** Whether frames are delivered by request. */
    bool ByRequest() const { return mPeriod == Period::zero(); }
    /** Orders one more frame; false when no more will come or the run goes by the clock. */
    bool RequestFrame();
    /** The same, and waits until the callback returned; false when there was none. */
    bool DeliverOne();

    /** Whether the thread has nothing left to do, so that Join() does not wait for a callback. */
    bool Ended() const { return mEnded.load(); }
    /** Waits for the thread, and so for a callback in flight. */
    void Join();

  private:
    using Time = std::chrono::steady_clock::time_point;

    void Run();
    /** When the next frame is due by the clock. */
    Time NextDue();
    /** Waits until the next frame is due; false when there is none. */
    bool AwaitTurn();
    /** Whether the callback may be called once more. */
    bool MayBegin();
    void NoteDelivered();
    void NoteEnd();
    bool OverLocked() const { return mStopped && mLateEvents == 0; }

    const Period mPeriod;
    const Source mSource;
    /** Of the thread, once it runs. */
    std::shared_ptr<IAovStreamCallback> mCallback;
    /** The same: when the latest frame was due, had it not been late. */
    Time mDue;

    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mStopped = false;
    /** Callbacks that begin although the run is stopped. */
    uint32_t mLateEvents = 0;
    bool mNoMoreFrames = false;
    uint64_t mRequested = 0;
    uint64_t mDelivered = 0;

    std::atomic<bool> mEnded{false};
    std::thread mThread;
};

}  // namespace zarvo::host
