#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "manager/IAONManagerCallback.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::test {

/** Remembers what the stream manager reports, as "start 2", "stop 2", "idle 2", "busy 2". */
class RecordingReceiver : public aon::IAONManagerCallback {
  public:
    /** Runs inside every report; set before the first. */
    std::function<void()> inside;

    void onCallback(aov_event* event) override {
        Keep("event " + std::to_string(event == nullptr ? -1 : static_cast<int>(event->frame_id)));
    }
    void OnServiceStart(int sensorId) override { Keep("start " + std::to_string(sensorId)); }
    void OnServiceStop(int sensorId) override { Keep("stop " + std::to_string(sensorId)); }
    void OnSensorIdle(int sensorId) override { Keep("idle " + std::to_string(sensorId)); }
    void OnSensorBusy(int sensorId) override { Keep("busy " + std::to_string(sensorId)); }

    /** Blocks until `count` reports are there, then takes all. */
    std::vector<std::string> Take(size_t count = 0) {
        std::unique_lock lock(mMutex);
        mChanged.wait_for(lock, kPatience, [&] { return mReports.size() >= count; });
        return std::exchange(mReports, {});
    }

  private:
    void Keep(std::string report) {
        if (inside) inside();
        std::lock_guard lock(mMutex);
        mReports.push_back(std::move(report));
        mChanged.notify_all();
    }

    std::mutex mMutex;
    std::condition_variable mChanged;
    std::vector<std::string> mReports;
};

}  // namespace zarvo::test
