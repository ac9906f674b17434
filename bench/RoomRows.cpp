// Two rooms on an event's way, each alone.

#include <benchmark/benchmark.h>

#include <memory>
#include <mutex>

#include "bench/Client.h"
#include "bench/Records.h"
#include "bench/Rows.h"
#include "bench/Sinks.h"
#include "callbacks/RemoteCallbackManager.h"
#include "manager/AONManager.h"

namespace zarvo::bench {

namespace {

/** Counts what the manager passes on. */
class NoReceiver : public aon::IAONManagerCallback {
  public:
    void onCallback(aov_event* event) override { benchmark::DoNotOptimize(event); }
    void OnServiceStart(int /*sensorId*/) override {}
    void OnServiceStop(int /*sensorId*/) override {}
    void OnSensorIdle(int /*sensorId*/) override {}
    void OnSensorBusy(int /*sensorId*/) override {}
};

/** What no room that shares its receiver between threads can do without: a lock that is tried, a
 * counted copy, the call. */
template <typename Receiver, typename Call>
Contestant Floor(std::shared_ptr<Receiver> receiver, Call call) {
    return {"lock, share, call", Repeated([mutex = std::make_shared<std::mutex>(), receiver, call] {
                if (!mutex->try_lock()) return;
                std::shared_ptr<Receiver> shared;
                shared = receiver;
                mutex->unlock();
                call(*shared);
            })};
}

void MeasureFanOut(Run& run) {
    Records records(k640x480, Records::Source::kWarm);
    AONCallBackInfo info;
    Convert(records.Next(), [&info](AONCallBackInfo& made) { info = std::move(made); });
    const auto client = ndk::SharedRefBase::make<CountingCallback>();
    const auto registry = std::make_shared<aon::RemoteCallbackManager>();
    int64_t handle = 0;
    registry->RegisterClient(client, &handle);
    const Contestant ours{"ours", Repeated([&] { registry->OnAONEvent(info); })};
    const auto receiver =
            std::static_pointer_cast<aon::RemoteCallbackManager::IAONServiceCallBack>(client);
    run.Race({ours, Floor(receiver, [&](auto& callback) { callback.onAONEvent(handle, info); })});
    registry->UnregisterClient(handle);
}

void MeasurePassThrough(Run& run) {
    Records records(k640x480, Records::Source::kWarm);
    aov_event* const event = &records.Next();
    const auto manager = std::make_shared<aon::AONManager>();
    const std::shared_ptr<aon::IAONManagerCallback> receiver = std::make_shared<NoReceiver>();
    manager->RegisterClient(receiver);
    const Contestant ours{"ours", Repeated([&] { manager->onCallback(event); })};
    run.Race({ours, Floor(receiver, [event](auto& callback) { callback.onCallback(event); })});
    manager->UnregisterClient();
}

}  // namespace

void AddRoomRows(RowList& rows) {
    rows.push_back({"rooms/registry fan-out", MeasureFanOut});
    rows.push_back({"rooms/manager pass-through", MeasurePassThrough});
}

}  // namespace zarvo::bench
