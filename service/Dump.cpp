// What the service shows to people who look at it.

#include <algorithm>
#include <string>

#include "service/AONService.h"
#include "service/DumpOutput.h"
#include "service/StatusReport.h"

namespace zarvo::aon {
namespace {

constexpr std::chrono::milliseconds kMostForReader{1000};
constexpr size_t kMostChanges = 48;

constexpr char kHelpText[] =
        "usage: dump [-a] [--json] [--help]\n"
        "\n"
        "Tells what the always-on camera service has and does: who is registered and since when,\n"
        "what each client subscribed and started, what the stream runs, sensors and cameras,\n"
        "events delivered and dropped, clients that hang in a callback, and the latest changes.\n"
        "It changes nothing and waits for nobody.\n"
        "\n"
        "  -a      all of it, as without\n"
        "  --json  the same as one JSON object\n"
        "  --help  this text\n";

enum class DumpForm { kText, kJson, kHelp, kUnknown };

DumpForm FormOf(const char** args, uint32_t numArgs) {
    DumpForm form = DumpForm::kText;
    for (uint32_t i = 0; i < numArgs; ++i) {
        const std::string_view argument = args[i] == nullptr ? "" : args[i];
        if (argument == "--help" || argument == "-h") return DumpForm::kHelp;
        if (argument == "-a") continue;  // bug reports and dumpsys ask everybody for all
        if (argument != "--json") return DumpForm::kUnknown;
        form = DumpForm::kJson;
    }
    return form;
}

std::vector<Change> Merge(std::initializer_list<std::vector<Change>> histories) {
    std::vector<Change> merged;
    for (const auto& history : histories)
        merged.insert(merged.end(), history.begin(), history.end());
    std::stable_sort(merged.begin(), merged.end(), [](const Change& a, const Change& b) {
        return a.when.steady < b.when.steady;
    });
    if (merged.size() > kMostChanges) merged.erase(merged.begin(), merged.end() - kMostChanges);
    return merged;
}

}  // namespace

binder_status_t AONService::dump(int fd, const char** args, uint32_t numArgs) {
    const DumpForm form = FormOf(args, numArgs);
    if (form == DumpForm::kHelp || form == DumpForm::kUnknown) {
        const binder_status_t written = WriteDump(fd, kHelpText, kMostForReader);
        return form == DumpForm::kUnknown ? STATUS_BAD_VALUE : written;
    }
    const auto writer = form == DumpForm::kJson ? MakeJsonWriter() : MakeTextWriter();
    ReportStatus(CollectStatus(), *writer);
    return WriteDump(fd, writer->Result(), kMostForReader);
}

ServiceStatus AONService::CollectStatus() {
    ServiceStatus status;
    status.created = mCreated;
    // Tried, not waited for: an operation may be inside a client that hangs, or be our caller's.
    if (mLockOwner.load() != std::this_thread::get_id() && mLock.try_lock()) {
        mRunning.Set({"dump", AIBinder_getCallingPid(), std::chrono::steady_clock::now()});
        status.clients = CollectClientsLocked();
        status.merged = ForStream(MergeSensorConfigs(mSensorConfigMap));
        mRunning.Set({});
        mLock.unlock();
    } else {
        status.running = mRunning.Get().value_or(RunningOperation{});
    }
    std::vector<Change> managerChanges;
    std::vector<Change> registryChanges;
    if (mAonManager != nullptr) {
        status.manager = mAonManager->Status();
        status.managerCounters = &mAonManager->Counters();
        managerChanges = mAonManager->LatestChanges();
    }
    if (mRemoteCallBackManager != nullptr) {
        status.registry = mRemoteCallBackManager->Status();
        status.registryCounters = &mRemoteCallBackManager->Counters();
        status.calls = mRemoteCallBackManager->CallsUnderWay();
        registryChanges = mRemoteCallBackManager->LatestChanges();
    }
    status.changes = Merge({mHistory.Latest(), managerChanges, registryChanges});
    status.now = Moment::Now();
    return status;
}

std::vector<ClientStatus> AONService::CollectClientsLocked() {
    std::vector<ClientStatus> clients;
    for (const auto& [handle, types] : mRegisterServiceTypeMap) {
        ClientStatus& client = clients.emplace_back();
        client.handle = handle;
        client.registeredTypes = types;
        client.startedTypes = StartedByLocked(handle);
        const auto config = mSensorConfigMap.find(handle);
        if (config != mSensorConfigMap.end()) client.config = config->second;
    }
    return clients;
}

}  // namespace zarvo::aon
