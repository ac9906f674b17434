#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/conformance/Client.h"

namespace conformance {

using State = Receiver::State;
using States = Receiver::States;
inline constexpr int32_t kIdle = aon::AONSensorStateInfo::SENSOR_STATE_IDLE;
inline constexpr int32_t kStarted = aon::AONSensorStateInfo::SENSOR_STATE_STARTED;

/** Tests that need the service only. */
class Service : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(service, nullptr) << "the service went away";
        ASSERT_EQ(AIBinder_ping(service->asBinder().get()), STATUS_OK) << "the service went away";
    }

    const std::shared_ptr<aon::IAONService> service = FindService();
};

/** Tests that need a sensor, too; skipped where none is offered. */
class Sensor : public Service {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(Service::SetUp());
        sensors = Sensors(*service);
        if (!FirstConfig(sensors, kAllTypes, &config)) GTEST_SKIP() << "no sensor is offered";
    }

    /** The configuration for these types only. */
    aon::SensorConfigInfo For(int32_t types) const {
        aon::SensorConfigInfo changed = config;
        changed.serviceType = types;
        return changed;
    }
    /** The state of the configured sensor. */
    State Told(int32_t state) const { return {config.sensorId, state}; }
    /** Brings a client to where it can start these types. */
    void Prepare(Client& client, int32_t subscribed = kAllTypes) const {
        ASSERT_EQ(client.Register(kAllTypes), kOk);
        ASSERT_EQ(client.Subscribe(For(subscribed)), kOk);
    }
    /** Brings a client to running and forgets the states that it was told. */
    void Run(Client& client, int32_t subscribed, int32_t started) const {
        ASSERT_NO_FATAL_FAILURE(Prepare(client, subscribed));
        ASSERT_EQ(client.Start(started), kOk)
                << "while these tests run nobody else may open a camera";
        EXPECT_EQ(client.receiver->TakeStates(), States{Told(kStarted)});
    }

    std::vector<aon::AONSensorInfo> sensors;
    /** A configuration that is offered, for all types. */
    aon::SensorConfigInfo config;
};

}  // namespace conformance
