#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Counter.h"
#include "platform/History.h"

namespace zarvo::aon {

/** What the registry knows, in a form that can be published: trivially copyable. */
struct RegistryStatus {
    struct Client {
        int64_t handle = 0;
        /** The process that registered it last, as binder told. */
        pid_t pid = 0;
        uid_t uid = 0;
        /** When it registered first. */
        Moment since{};
    };
    struct Sensor {
        int32_t id = 0;
        /** As last told to clients: AONSensorStateInfo's. */
        int32_t state = 0;
    };
    static constexpr std::size_t kMostClients = 4;
    static constexpr std::size_t kMostSensors = 16;

    /** All of them; the first ones are described. */
    uint32_t clientCount = 0;
    std::array<Client, kMostClients> clients{};
    /** The sensors that are not idle, as last told: all of them; the first ones are described. */
    uint32_t sensorCount = 0;
    std::array<Sensor, kMostSensors> sensors{};
};

/** What happened to the events that were to be delivered. */
struct RegistryCounters {
    /** Taken by a client. */
    Counter delivered;
    /** Dropped because the registry was being changed. */
    Counter droppedBusy;
    /** There was no client. */
    Counter droppedNoClient;
    /** The client did not answer a ping. */
    Counter droppedNoAnswer;
    /** The call to the client failed. */
    Counter droppedFailed;
    /** Sensor states that clients took, and that they did not. */
    Counter statesDelivered, statesFailed;
    LastTime lastDelivered;
};

}  // namespace zarvo::aon
