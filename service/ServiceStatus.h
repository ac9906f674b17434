#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "callbacks/ClientCalls.h"
#include "callbacks/RegistryStatus.h"
#include "manager/ManagerStatus.h"
#include "platform/History.h"
#include "service/SensorArbitration.h"

namespace zarvo::aon {

/** The operation, or the look at the service, that holds its lock. Trivially copyable. */
struct RunningOperation {
    /** Null when there is none. */
    const char* name = nullptr;
    /** The process that called it, as binder told; Change::kNobody where it told none. */
    pid_t pid = 0;
    LastTime::Time since{};
};

/** What the service keeps of one client. */
struct ClientStatus {
    int64_t handle = 0;
    int32_t registeredTypes = 0;
    int32_t startedTypes = 0;
    std::optional<SensorConfigInfo> config;
};

/** What the service and its collaborators have and do, as far as it can be known now. */
struct ServiceStatus {
    /** When all of this was collected. Counters may count on. */
    Moment now{};
    Moment created{};
    RunningOperation running;
    /** Nothing when somebody else holds the service's lock. */
    std::optional<std::vector<ClientStatus>> clients;
    /** The merge of them, as the stream gets it. */
    SensorConfigInfo merged;
    std::optional<ManagerStatus> manager;
    std::optional<RegistryStatus> registry;
    /** Null without the collaborator; else they live as long as the service. */
    const ManagerCounters* managerCounters = nullptr;
    const RegistryCounters* registryCounters = nullptr;
    std::vector<ClientCalls::Call> calls;
    /** The latest, the oldest first. */
    std::vector<Change> changes;
};

}  // namespace zarvo::aon
