#include "service/StatusReport.h"

#include <algorithm>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "service/Version.h"

namespace zarvo::aon {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

constexpr char kChanging[] = "being changed just now";

/** A part that is not there has a name of its own, so that each name has one type. */
void ReportUnknown(const std::string& part, std::string_view why, StatusWriter& writer) {
    writer.Text(part + " unknown", why);
}

/** The age of what was noted at `then`; 0 for what came after the status. */
StatusWriter::Span Since(Moment::Steady then, const ServiceStatus& status) {
    return std::max(StatusWriter::Span{}, StatusWriter::Span(status.now.steady - then));
}

void ReportPid(pid_t pid, StatusWriter& writer) {
    if (pid > Change::kNobody) writer.Number("pid", pid);
}

void ReportService(const ServiceStatus& status, StatusWriter& writer) {
    writer.Begin("service");
    writer.Text("version", kVersion);
    writer.Text("interface", IAONService::descriptor);
    writer.Number("interface version", IAONService::version);
    writer.Text("interface hash", IAONService::hash);
    writer.Time("up since", status.created.wall);
    writer.Duration("up for", Since(status.created.steady, status));
    writer.End();
}

void ReportRunning(const ServiceStatus& status, StatusWriter& writer) {
    if (status.running.name == nullptr) return;
    writer.Begin("operation under way");
    writer.Text("name", status.running.name);
    ReportPid(status.running.pid, writer);
    writer.Duration("for", Since(status.running.since, status));
    writer.End();
}

template <typename Config>
void ReportConfig(const Config& config, StatusWriter& writer) {
    writer.Number("sensor", config.sensorId);
    writer.Number("width", config.frameWidth);
    writer.Number("height", config.frameHeight);
    writer.Number("fps", config.fps);
    writer.Types("types", config.serviceType);
    writer.Number("delivery mode", config.deliveryMode);
}

/** Ends a list that had no room for all. */
void ReportMore(size_t count, size_t room, StatusWriter& writer) {
    if (count <= room) return;
    writer.Begin({});
    writer.Number("more", static_cast<int64_t>(count - room));
    writer.End();
}

void ReportRegistered(const ServiceStatus& status, StatusWriter& writer) {
    static constexpr char kPart[] = "registered clients";
    if (status.registryCounters == nullptr) return ReportUnknown(kPart, "no registry", writer);
    if (!status.registry) return ReportUnknown(kPart, kChanging, writer);
    const RegistryStatus& registry = *status.registry;
    writer.BeginList(kPart);
    for (size_t i = 0; i < std::min<size_t>(registry.clientCount, registry.clients.size()); ++i) {
        const RegistryStatus::Client& client = registry.clients[i];
        writer.Begin({});
        writer.Number("client", client.handle);
        ReportPid(client.pid, writer);
        writer.Number("uid", client.uid);
        writer.Time("since", client.since.wall);
        writer.Duration("for", Since(client.since.steady, status));
        writer.End();
    }
    ReportMore(registry.clientCount, registry.clients.size(), writer);
    writer.End();
}

void ReportWishes(const ServiceStatus& status, StatusWriter& writer) {
    if (!status.clients) return ReportUnknown("wishes", "somebody has the service's lock", writer);
    writer.BeginList("wishes");
    for (const ClientStatus& client : *status.clients) {
        writer.Begin({});
        writer.Number("client", client.handle);
        writer.Types("registered", client.registeredTypes);
        writer.Types("started", client.startedTypes);
        writer.Flag("subscribed", client.config.has_value());
        if (client.config) ReportConfig(*client.config, writer);
        writer.End();
    }
    writer.End();
    writer.Begin("merged wishes");
    int32_t started = 0;
    for (const ClientStatus& client : *status.clients)
        started |= client.startedTypes;
    writer.Types("started", started);
    ReportConfig(status.merged, writer);
    writer.End();
}

void ReportStream(const ServiceStatus& status, StatusWriter& writer) {
    if (status.managerCounters == nullptr) {
        return ReportUnknown("stream", "no stream manager", writer);
    }
    if (!status.manager) return ReportUnknown("stream", kChanging, writer);
    const ManagerStatus& manager = *status.manager;
    writer.Begin("stream");
    writer.Flag("there", manager.hasStream);
    writer.Flag("running", manager.openedSensorId != kNoSensor);
    // A stream that refused to stop.
    writer.Flag("left running", manager.streamInited && manager.openedSensorId == kNoSensor);
    writer.Number("on sensor", manager.openedSensorId);
    writer.Types("running types", manager.serviceTypeStarted);
    writer.End();
    writer.Begin("next start");
    ReportConfig(manager.subscribed, writer);
    writer.End();
}

void ReportCameras(const ServiceStatus& status, StatusWriter& writer) {
    if (!status.manager) return;
    const ManagerStatus& manager = *status.manager;
    writer.BeginList("open cameras");
    for (size_t i = 0; i < std::min<size_t>(manager.deviceCount, manager.devices.size()); ++i) {
        const ManagerStatus::OpenDevice& device = manager.devices[i];
        writer.Begin({});
        writer.Number("camera", device.instanceId);
        const size_t named = std::min<size_t>(device.sensorCount, device.sensorIds.size());
        writer.Numbers("sensors", {device.sensorIds.data(), named});
        if (device.sensorCount > named) {
            writer.Number("more", static_cast<int64_t>(device.sensorCount - named));
        }
        writer.End();
    }
    ReportMore(manager.deviceCount, manager.devices.size(), writer);
    writer.End();
}

const char* StateName(int32_t state) {
    if (state == AONSensorStateInfo::SENSOR_STATE_STARTED) return "started";
    return state == AONSensorStateInfo::SENSOR_STATE_BUSY ? "busy" : "idle";
}

void ReportSensors(const ServiceStatus& status, StatusWriter& writer) {
    if (!status.registry) return;
    const RegistryStatus& registry = *status.registry;
    writer.BeginList("sensors that are not idle");
    for (size_t i = 0; i < std::min<size_t>(registry.sensorCount, registry.sensors.size()); ++i) {
        writer.Begin({});
        writer.Number("sensor", registry.sensors[i].id);
        writer.Text("state", StateName(registry.sensors[i].state));
        writer.End();
    }
    ReportMore(registry.sensorCount, registry.sensors.size(), writer);
    writer.End();
}

void ReportCount(std::string_view name, const Counter& counter, StatusWriter& writer) {
    writer.Number(name, static_cast<int64_t>(counter.Count()));
}

void ReportAge(std::string_view name, const LastTime& last, const ServiceStatus& status,
               StatusWriter& writer) {
    if (last.IsSet()) writer.Duration(name, Since(last.Get(), status));
}

void ReportEvents(const ServiceStatus& status, StatusWriter& writer) {
    writer.Begin("events");
    if (status.managerCounters != nullptr) {
        const ManagerCounters& counters = *status.managerCounters;
        ReportCount("from the stream", counters.events, writer);
        ReportAge("last from the stream ago", counters.lastEvent, status, writer);
        ReportCount("dropped while the stream was changed", counters.droppedBusy, writer);
        ReportCount("dropped without receiver", counters.droppedNoReceiver, writer);
        ReportCount("dropped without record", counters.droppedNoRecord, writer);
    }
    if (status.registryCounters != nullptr) {
        const RegistryCounters& counters = *status.registryCounters;
        ReportCount("delivered", counters.delivered, writer);
        ReportAge("last delivered ago", counters.lastDelivered, status, writer);
        ReportCount("dropped while clients were changed", counters.droppedBusy, writer);
        ReportCount("dropped without client", counters.droppedNoClient, writer);
        ReportCount("dropped without answer to a ping", counters.droppedNoAnswer, writer);
        ReportCount("dropped by a failed call", counters.droppedFailed, writer);
        ReportCount("states delivered", counters.statesDelivered, writer);
        ReportCount("states failed", counters.statesFailed, writer);
    }
    writer.End();
}

void ReportCalls(const ServiceStatus& status, StatusWriter& writer) {
    writer.BeginList("inside clients");
    for (const ClientCalls::Call& call : status.calls) {
        writer.Begin({});
        writer.Number("client", call.clientHandle);
        writer.Text("callback", call.what);
        writer.Duration("for", Since(call.since, status));
        writer.End();
    }
    writer.End();
}

void ReportChanges(const ServiceStatus& status, StatusWriter& writer) {
    writer.BeginList("latest changes");
    for (const Change& change : status.changes) {
        writer.Begin({});
        writer.Time("at", change.when.wall);
        writer.Text("change", change.what);
        ReportPid(change.pid, writer);
        if (change.clientHandle != 0) writer.Number("client", change.clientHandle);
        if (change.cameraDevice != Change::kNone) writer.Number("camera", change.cameraDevice);
        if (change.sensorId != Change::kNone) writer.Number("sensor", change.sensorId);
        if (change.serviceTypes != Change::kNone) writer.Types("types", change.serviceTypes);
        if (*change.reason != '\0') writer.Text("reason", change.reason);
        writer.End();
    }
    writer.End();
}

}  // namespace

void ReportStatus(const ServiceStatus& status, StatusWriter& writer) {
    ReportService(status, writer);
    ReportRunning(status, writer);
    ReportCalls(status, writer);
    ReportRegistered(status, writer);
    ReportWishes(status, writer);
    ReportStream(status, writer);
    ReportSensors(status, writer);
    ReportCameras(status, writer);
    ReportEvents(status, writer);
    ReportChanges(status, writer);
}

}  // namespace zarvo::aon
