#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "callbacks/RemoteCallbackManager.h"
#include "tests/clients/RemoteCallback.h"
#include "tests/support/LogRecorder.h"

namespace zarvo::test {

using Lines = std::vector<std::string>;
using State = RecordingCallback::State;

/** Remembers the deaths that it is told of. */
class DeathListener : public aon::IRemoteCallbackManagerListener {
  public:
    using Callback = std::shared_ptr<RemoteCallback::IAONServiceCallBack>;

    void OnRemoteCallbackDied(int64_t clientHandle, const Callback& callback) override {
        if (inside) inside();
        std::lock_guard lock(mMutex);
        handles.push_back(clientHandle);
        callbacks.push_back(callback);
    }

    /** Runs inside every notice; set before the first. */
    std::function<void()> inside;
    std::vector<int64_t> handles;
    std::vector<Callback> callbacks;

  private:
    std::mutex mMutex;
};

/** The registry, as a service uses it. Death notices come to the singleton. */
class RegistryFixture : public testing::Test {
  protected:
    void Report(int sensorId, int state) {
        RecordingCallback::AONSensorStateInfo info;
        info.sensorId = sensorId;
        info.state = state;
        mRegistry->OnAONSensorEvent(info);
    }
    int64_t Register(const std::shared_ptr<RemoteCallback::IAONServiceCallBack>& callback) {
        int64_t handle = 0;
        EXPECT_EQ(mRegistry->RegisterClient(callback, &handle), 0);
        return handle;
    }

    const std::shared_ptr<aon::RemoteCallbackManager> mRegistry =
            aon::RemoteCallbackManager::GetSingleton();
};

}  // namespace zarvo::test
