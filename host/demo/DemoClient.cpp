#include "host/demo/DemoClient.h"

#include <csignal>
#include <utility>

#include "host/programs/Lines.h"
#include "host/text/EventText.h"

namespace zarvo::host::demo {

DemoClient::DemoClient(std::string name, Stage& stage, Narrator& narrator)
    : mName(std::move(name)),
      mStage(stage),
      mNarrator(narrator),
      mActor(stage, narrator, mName, "client",
             [this](std::string_view kind, std::string_view text) { OnFact(kind, text); }) {}

void DemoClient::Call(const std::string& what, const std::string& command, Expected expected) {
    mNarrator.Tell(mName, what);
    const Actor::Answer answer = mActor.Ask(command);
    mNarrator.Tell(mName, "  -> " + (answer.accepted ? "OK" : "refused: " + answer.refusal));
    mNarrator.Check(answer.accepted == (expected == Expected::kAccepted), what);
}

void DemoClient::ListSensors() {
    Call("getAonSensorInfoList()", "list");
    mNarrator.Check(mSensors > 0, "there are sensors");
}

void DemoClient::Register(int32_t serviceTypes) {
    Call("registerClient(" + ServiceTypesText(serviceTypes) + ")",
         "register " + std::to_string(serviceTypes));
}

void DemoClient::Subscribe(const SensorConfigInfo& config) {
    const std::string sensor = std::to_string(config.sensorId);
    const std::string width = std::to_string(config.frameWidth);
    const std::string height = std::to_string(config.frameHeight);
    const std::string rate = std::to_string(config.fps);
    Call("subscribeSensor(sensor " + sensor + ", " + width + "x" + height + " at " + rate +
                 " fps, " + ServiceTypesText(config.serviceType) + ")",
         "subscribe " + sensor + ' ' + width + ' ' + height + ' ' + rate + ' ' +
                 std::to_string(config.serviceType));
}

void DemoClient::Start(int32_t serviceTypes, Expected expected) {
    Call("startService(" + ServiceTypesText(serviceTypes) + ")",
         "start " + std::to_string(serviceTypes), expected);
}

void DemoClient::Stop(int32_t serviceTypes) {
    Call("stopService(" + ServiceTypesText(serviceTypes) + ")",
         "stop " + std::to_string(serviceTypes));
}

void DemoClient::Unsubscribe() {
    Call("unsubscribeSensor()", "unsubscribe");
}

void DemoClient::Unregister() {
    Call("unregisterClient()", "unregister");
}

void DemoClient::WatchEvents(const Watch& watch, int count) {
    mWatch = watch;
    mLeftToWatch = count;
    mStage.Await(mName + " gets events", [this] { return mLeftToWatch == 0; });
}

void DemoClient::AwaitState(int32_t sensorId, int32_t state) {
    mStage.Await(mName + " is told state " + std::to_string(state), [&] {
        const auto last = mLastStates.find(sensorId);
        return last != mLastStates.end() && last->second == state;
    });
}

void DemoClient::Leave() {
    mActor.Dismiss();
    const Process& process = mActor.GetProcess();
    mNarrator.Tell(mName, "ends: " + process.EndText());
    mNarrator.Check(process.HasExited(EXIT_SUCCESS), mName + " ends in good order");
}

void DemoClient::Kill() {
    mNarrator.Remark(mName + " is killed: kill -9 " + std::to_string(mActor.GetProcess().Pid()));
    mActor.Kill();
    mNarrator.Check(mActor.GetProcess().WasKilled(SIGKILL), mName + " is killed");
}

void DemoClient::OnFact(std::string_view kind, std::string_view text) {
    if (kind == "event") {
        OnEvent(text);
    } else if (kind == "state") {
        OnState(text);
    } else if (kind == "sensor") {
        ++mSensors;
        mNarrator.Remark("     " + std::string(text));
    } else if (kind == "handle") {
        mNarrator.Tell(mName, "     handle " + std::string(text));
    }
}

void DemoClient::OnEvent(std::string_view text) {
    const auto serviceTypes = ParseNumber(TakeWord(text));
    const auto faces = ParseNumber(TakeWord(text));
    ++mEvents;
    if (mLeftToWatch == 0 || !IsWatched(serviceTypes.value_or(0), faces.value_or(0))) return;
    --mLeftToWatch;
    mNarrator.Tell(mName, "  event " + std::string(text));
}

void DemoClient::OnState(std::string_view text) {
    const auto sensorId = ParseNumber(TakeWord(text));
    const auto state = ParseNumber(TakeWord(text));
    ++mStates;
    mLastStates[sensorId.value_or(-1)] = state.value_or(-1);
    mNarrator.Tell(mName, "  told: " + std::string(text));
}

bool DemoClient::IsWatched(int64_t serviceTypes, int64_t faces) const {
    return serviceTypes == mWatch.serviceTypes && (!mWatch.faces || faces == *mWatch.faces);
}

}  // namespace zarvo::host::demo
