#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "manager/AONManager.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/ScriptedModules.h"
#include "tests/support/ScriptedStream.h"

namespace zarvo::test {

using Lines = std::vector<std::string>;

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

/** A manager on the scripted stream, with a receiver, and no log line or call noted yet. */
class ManagerFixture : public testing::Test {
  protected:
    ManagerFixture() {
        mManager->RegisterClient(mReceiver);
        mLog.Take();
    }
    ~ManagerFixture() override { mManager->StopService(); }

    void Subscribe(int sensorId, int fps = 10, int deliveryMode = 1) {
        mManager->SubscribeSensor({sensorId, 640, 480, fps, 15, deliveryMode});
        mLog.Take();
    }
    void Run(int sensorId, int serviceType = 1) {
        Subscribe(sensorId);
        ASSERT_EQ(mManager->StartService(serviceType), 0);
        mLog.Take();
        mStream.TakeCalls();
        mReceiver->Take();
    }
    /** The manager's lines, without its name. */
    Lines TakeLines() {
        Lines lines;
        for (const std::string& line : mLog.TakeTexts())
            lines.push_back(line.substr(0, 3) + line.substr(line.find(": ", 3) + 2));
        return lines;
    }
    /** Compares what was asked of the stream, reported and logged since the last look. */
    void ExpectSeen(const Lines& calls, const Lines& reports, const Lines& lines) {
        EXPECT_EQ(mReceiver->Take(reports.size()), reports);
        EXPECT_EQ(mStream.TakeCalls(), calls);
        EXPECT_EQ(TakeLines(), lines);
    }

    ScriptedStream& mStream = ScriptedStream::Instance();
    ScriptedModules& mModules = ScriptedModules::Instance();
    LogRecorder mLog;
    const std::shared_ptr<RecordingReceiver> mReceiver = std::make_shared<RecordingReceiver>();
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
};

}  // namespace zarvo::test
