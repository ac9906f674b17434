#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "platform/mtkcam/IAOVStream.h"

namespace zarvo::host {

/**
 * Tells the stream's callback which camera devices open and close: one notice after another, in
 * the order of the calls, on a thread of its own, which begins with the first notice.
 *
 * A notice is for the callback of the time of its call, which is held weakly: when there is none,
 * nobody is told. A new callback is told of the devices that are open when it comes. No lock is
 * held while it is called, so it may call the stream. Any thread; Shutdown() by one at a time, and
 * not from a notice.
 */
class CameraNotices {
  public:
    CameraNotices() = default;
    ~CameraNotices();
    CameraNotices(const CameraNotices&) = delete;
    CameraNotices& operator=(const CameraNotices&) = delete;

    void SetListener(const std::shared_ptr<IAovStreamCallback>& listener);
    void Open(int instanceId);
    void Close(int instanceId);
    /** Closes the device if it is open, then opens and closes it so many times in a row. */
    void Storm(int instanceId, uint32_t cycles);
    std::vector<int> OpenDevices() const;
    /** Waits until the callback returned from every notice so far. */
    void WaitUntilDelivered();
    /** Delivers what is left, of a storm only the cycle it is in, and ends the thread; a later
     * notice begins another. */
    void Shutdown();

  private:
    enum class Kind { kOpen, kClose, kStorm };
    struct Notice {
        Kind kind;
        int instanceId;
        /** Of a storm: how often it opens and closes. */
        uint32_t cycles;
        std::weak_ptr<IAovStreamCallback> listener;

        void TellOpen() const;
        void TellClose() const;
    };

    void PushLocked(Kind kind, int instanceId, uint32_t cycles = 0);
    /** Whether a thread serves, after trying to start one. */
    bool EnsureThreadLocked();
    /** Joins a thread that serves no more, if there is one. */
    void JoinServedLocked();
    void Run();
    void Deliver(const Notice& notice);
    void DeliverStorm(const Notice& notice);
    bool Stopping();

    mutable std::mutex mMutex;
    std::condition_variable mChanged;
    std::weak_ptr<IAovStreamCallback> mListener;
    std::set<int> mOpenDevices;
    std::deque<Notice> mNotices;
    bool mDelivering = false;
    bool mStopping = false;
    /** Whether mThread will look for notices again. */
    bool mServing = false;
    std::thread mThread;
};

}  // namespace zarvo::host
