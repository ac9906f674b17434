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

    ScriptedStream& mStream = ScriptedStream::Instance();
    ScriptedModules& mModules = ScriptedModules::Instance();
    LogRecorder mLog;
    const std::shared_ptr<RecordingReceiver> mReceiver = std::make_shared<RecordingReceiver>();
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
};

}  // namespace zarvo::test
