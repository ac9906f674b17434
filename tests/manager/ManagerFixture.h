#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "manager/AONManager.h"
#include "tests/manager/RecordingReceiver.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/ScriptedModules.h"
#include "tests/support/ScriptedStream.h"

namespace zarvo::test {

using Lines = std::vector<std::string>;

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
