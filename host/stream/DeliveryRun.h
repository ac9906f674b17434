#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

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
    using Time = std::chrono::steady_clock::time_point;
    /** Where the frames come from; asked by the run's thread, which holds no lock then. */
    struct Source {
        /** When the next frame is due by the clock, or nothing when there is no more. Null for a
         * run by request. */
        std::function<std::optional<Time>()> nextDue;
        /** Writes that frame into the record and gives what is to be delivered, which may be a
         * null record; nothing when there is no more. */
        std::function<std::optional<aov_event*>(aov_event& record)> render;
        /** Whether the frame that was rendered last may still be delivered. Null for always. */
        std::function<bool()> claim;
    };

    DeliveryRun(std::shared_ptr<IAovStreamCallback> callback, Source source)
        : mSource(std::move(source)), mCallback(std::move(callback)) {}
    ~DeliveryRun();
    DeliveryRun(const DeliveryRun&) = delete;
    DeliveryRun& operator=(const DeliveryRun&) = delete;

    /** Starts the thread, once; false when there can be none. */
    bool Launch();
    /** After its return no further callback begins, but for `lateEvents` of them: a fault. A second
     * call says anew how many. */
    void Stop(uint32_t lateEvents = 0);

    /** Whether frames are delivered by request. */
    bool ByRequest() const { return mSource.nextDue == nullptr; }
    /** Orders one more frame; false when no more will come or the run goes by the clock. */
    bool RequestFrame();
    /** The same, and waits until the callback returned; false when there was none. */
    bool DeliverOne();

    /** Whether the thread has nothing left to do, so that Join() does not wait for a callback. */
    bool Ended() const { return mEnded.load(); }
    /** Waits for the thread, and so for a callback in flight. */
    void Join();

  private:
    void Run();
    /** Waits until the next frame is due; false when there is none. */
    bool AwaitTurn();
    /** Whether the callback may be called once more. */
    bool MayBegin();
    void Deliver(aov_event* event);
    void NoteDelivered();
    void NoteEnd();
    void AwaitStop();
    bool OverLocked() const { return mStopped && mLateEvents == 0; }

    const Source mSource;
    /** Of the thread, once it runs. */
    std::shared_ptr<IAovStreamCallback> mCallback;

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
