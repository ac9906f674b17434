#include "host/soak/Sections.h"

#include <poll.h>

#include <algorithm>
#include <random>

#include "host/soak/Interrupt.h"
#include "host/soak/Life.h"
#include "host/soak/Victim.h"
#include "host/soak/Wait.h"

namespace zarvo::host::soak {
namespace {

constexpr int kIdle = AONSensorStateInfo::SENSOR_STATE_IDLE;
constexpr int kStarted = AONSensorStateInfo::SENSOR_STATE_STARTED;
constexpr int kBusy = AONSensorStateInfo::SENSOR_STATE_BUSY;
/** A camera device on the client's sensor alone, and one on that and, told after it, another. */
constexpr int kCamera = 0;
constexpr int kWideCamera = 4;
constexpr int kWideSensor = 1;
/** A camera device, and its sensor, that no client uses. */
constexpr int kLastCamera = 2;

class StartStop : public Section {
    std::string Title() const override { return "start and stop"; }

    void Run(ServiceProcess& service, uint64_t times, Row& row) override {
        Progress progress(Title(), times);
        Life life(service, row, {kStarted, kIdle});
        for (uint64_t i = 0; i < times && life.IsGood() && !Interrupted(); ++i, ++row.done) {
            life.Start() && life.ExpectStreaming(true) && life.Stop() &&
                    life.ExpectStreaming(false);
            // Told before the calls return.
            life.Check(life.Callback().States(0) == 2 * (i + 1), "a state was lost");
            progress.Show(i);
        }
    }
};

class CameraOpenClose : public Section {
    std::string Title() const override { return "camera open and close"; }

    void Run(ServiceProcess& service, uint64_t times, Row& row) override {
        Progress progress(Title(), times);
        Life life(service, row, {kStarted, kBusy, kIdle});
        for (uint64_t i = 0; i < times && life.IsGood() && !Interrupted(); ++i, ++row.done) {
            life.Start() && life.ExpectStreaming(true) && life.OpenCamera(kCamera) &&
                    life.AwaitStates(3 * i + 2) && life.ExpectStreaming(false) &&
                    life.CloseCamera(kCamera) && life.AwaitStates(3 * i + 3);
            progress.Show(i);
        }
    }
};

/**
 * Cameras that open and close as fast as the service takes it, against a client that starts and
 * stops as fast. An open that overtakes the close before it is forgotten: it is not told, and does
 * not keep the sensor. But none is told as opened that is not told as closed after it; and a camera
 * that opens when all others are through keeps the sensor until it closes.
 */
class CameraStorm : public Section {
    std::string Title() const override { return "camera storm"; }

    void Run(ServiceProcess& service, uint64_t times, Row& row) override {
        Progress progress(Title(), times);
        Life life(service, row, {kBusy, kIdle}, Client::Besides::kStarts);
        constexpr uint64_t kStorm = 10;
        for (uint64_t done = 0; done < times && life.IsGood() && !Interrupted();) {
            const uint64_t cycles = std::min(kStorm, times - done);
            RunStorm(life, cycles - 1) && RunCamera(life);
            done += cycles;
            row.done += cycles;
            progress.Show(done);
        }
    }

    static bool RunStorm(Life& life, uint64_t cycles) {
        const uint64_t told = life.Callback().States(kLastCamera);
        // The last camera is told when all before it are through.
        return life.StormCamera(kWideCamera, cycles) && life.OpenCamera(kLastCamera) &&
               life.CloseCamera(kLastCamera) && life.StartUntilStates(told + 2, kLastCamera);
    }
    static bool RunCamera(Life& life) {
        // Of its sensors, the one that the client does not start.
        const uint64_t told = life.Callback().States(kWideSensor);
        return life.OpenCamera(kWideCamera) && life.StartUntilStates(told + 1, kWideSensor) &&
               life.ExpectStreaming(false) && life.ExpectRefusedStart() &&
               life.ExpectStreaming(false) && life.CloseCamera(kWideCamera) &&
               life.StartUntilStates(told + 2, kWideSensor) && life.Start() &&
               life.ExpectStreaming(true);
    }
};

class Kill : public Section {
  public:
    explicit Kill(const KillState& state) : mState(state) {}

  private:
    std::string Title() const override { return std::string(mState.title); }

    void Run(ServiceProcess& service, uint64_t times, Row& row) override {
        Progress progress(Title(), times);
        for (uint64_t i = 0; i < times && row.findings.empty() && !Interrupted(); ++i, ++row.done) {
            Victim victim(mState.name);
            const std::string instead = victim.AwaitThere();
            if (!instead.empty()) row.Find(instead);
            if (mState.name == "stopped") HangService(victim, service, row);
            if (mState.name == "call") poll(nullptr, 0, static_cast<int>(mRandom() % 3));
            victim.Kill();
            // Every other time the next one comes at once, maybe before the death is noticed.
            if (i % 2 == 0 && !service.AwaitReleased()) row.Find("the sensor streams on");
            progress.Show(i);
        }
        if (!service.AwaitReleased()) row.Find("the sensor streams on");
    }

    /** Stops the client, and waits until an event has caught the service in its call. */
    static void HangService(const Victim& victim, const ServiceProcess& service, Row& row) {
        victim.Stop();
        const auto isInside = [&] {
            return service.Dump().find("\"insideClients\":[]") == std::string::npos;
        };
        if (!Await(isInside)) row.Find("the dump does not show who hangs");
    }

    const KillState mState;
    std::minstd_rand mRandom;
};

class Events : public Section {
    std::string Title() const override { return "events"; }

    void Run(ServiceProcess& service, uint64_t times, Row& row) override {
        Progress progress(Title(), times);
        Life life(service, row, {kStarted, kIdle});
        const int64_t deliveredBefore = NumberIn(service.Dump(), "delivered");
        uint64_t came = 0;
        life.Start();
        while (came < times && life.IsGood() && !Interrupted()) {
            life.AwaitEvents(std::min(times, came + kStep));
            came = life.Callback().Events();
            progress.Show(came);
        }
        life.Stop();
        life.Check(Await([&] { return AllAccountedFor(service.Dump()); }),
                   "an event was neither delivered nor counted as dropped");
        came = life.Callback().Events();
        const int64_t delivered = NumberIn(service.Dump(), "delivered") - deliveredBefore;
        life.Check(static_cast<uint64_t>(delivered) == came,
                   std::to_string(delivered) + " events were delivered, " + std::to_string(came) +
                           " came");
        row.done += came;
    }

    static bool AllAccountedFor(const std::string& dump) {
        int64_t left = NumberIn(dump, "fromTheStream");
        for (const char* const end :
             {"delivered", "droppedWhileTheStreamWasChanged", "droppedWithoutReceiver",
              "droppedWithoutRecord", "droppedWhileClientsWereChanged", "droppedWithoutClient",
              "droppedWithoutAnswerToAPing", "droppedByAFailedCall"}) {
            left -= NumberIn(dump, end);
        }
        return left == 0;
    }

    static constexpr uint64_t kStep = 100;
};

}  // namespace

std::vector<Plan> SceneSections() {
    std::vector<Plan> plans;
    plans.push_back({std::make_unique<StartStop>(), 100});
    plans.push_back({std::make_unique<CameraOpenClose>(), 100});
    plans.push_back({std::make_unique<CameraStorm>(), 100});
    for (const KillState& state : AllKillStates())
        plans.push_back({std::make_unique<Kill>(state), 10});
    return plans;
}

Plan EventSection() {
    return {std::make_unique<Events>(), 10'000};
}

void LiveOnce(ServiceProcess& service, Row& row, size_t events,
              std::vector<AONCallBackInfo>* kept) {
    Life life(service, row, {kStarted, kIdle});
    if (kept != nullptr) life.Callback().Keep(events);
    life.Start() && life.AwaitEvents(events) && life.Stop() && life.ExpectStreaming(false);
    if (kept != nullptr) *kept = life.Callback().TakeKept();
}

}  // namespace zarvo::host::soak
