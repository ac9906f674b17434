#include "tests/model/RealWorld.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/support/LogRecorder.h"
#include "tests/support/ScriptedModules.h"

namespace zarvo::test {
namespace {

/** No camera has this number. */
constexpr int kNoCamera = 99;

/** The service on a manager that is not the process's one. */
class ServiceOn : public aon::AONService {
  public:
    explicit ServiceOn(std::shared_ptr<aon::AONManager> manager)
        : AONService(aon::RemoteCallbackManager::GetSingleton(), std::move(manager),
                     aon::AONManagerCallback::create(aon::RemoteCallbackManager::GetSingleton())) {}
};

ScriptedStream::Sensors WhatSensorsOffer() {
    ScriptedStream::Sensors sensors;
    for (const int32_t id : kSensors) {
        auto& [sensor, records] = sensors.emplace_back();
        sensor = id;
        for (const Offer& offer : kOffers)
            records.push_back(ScriptedStream::Record(offer.width, offer.height, 0, offer.rates));
    }
    return sensors;
}

}  // namespace

std::unique_ptr<Process>& RealWorld::At(User user) {
    static std::unique_ptr<Process> processes[std::size(kUsers)];
    auto& process = processes[static_cast<size_t>(user)];
    if (process == nullptr) process = std::make_unique<Process>();
    return process;
}

RealWorld::RealWorld() {
    mStream.SetSensors(WhatSensorsOffer());
    ScriptedModules::Instance().SetDevices(kCameras);
    mStream.SetHooks({}, {}, [this] { mCameraNotices.release(); });
    MakeService();
}

RealWorld::~RealWorld() {
    while (!mUnnoticed.empty())
        TellDeath();
    mService.reset();
    ResetRegistry();
    for (auto* fault : {&mStream.startFault, &mStream.stopFault, &mStream.notifyFault})
        fault->Clear();
    mManager->StopService();
    mStream.stop();
    mStream.SetHooks({}, {}, {});
    Look("");
}

void RealWorld::ResetRegistry() {
    // The service has done so itself, unless it is broken. The next story must not pay for that.
    const auto registry = aon::RemoteCallbackManager::GetSingleton();
    registry->Clear();
    for (int32_t sensor = 0; sensor <= kLastSensor; ++sensor) {
        aon::RemoteCallbackManager::AONSensorStateInfo idle;
        idle.sensorId = sensor;
        registry->OnAONSensorEvent(idle);
    }
}

void RealWorld::MakeService() {
    mService = ndk::SharedRefBase::make<ServiceOn>(mManager);
}

Outcome RealWorld::Do(const Step& step) {
    return Look(Happen(step));
}

std::string RealWorld::Happen(const Step& step) {
    const auto& [act, user, number, config] = step;
    const int64_t handle = user == User::kMallory ? kMallorysHandle : kHandle;
    int64_t unused = 0;
    switch (act) {
        case Act::kRegister:
            return Register(*At(user), number);
        case Act::kRegisterNothing:
            return mService->registerClient(nullptr, 1, &unused).getDescription();
        case Act::kSubscribe:
            return mService->subscribeSensor(handle, config).getDescription();
        case Act::kStart:
            return mService->startService(handle, number).getDescription();
        case Act::kStop:
            return mService->stopService(handle, number).getDescription();
        case Act::kUnsubscribe:
            return mService->unsubscribeSensor(handle).getDescription();
        case Act::kUnregister:
            return mService->unregisterClient(handle).getDescription();
        case Act::kDie:
            End(user)->TellDeath();
            break;
        case Act::kDieUnnoticed:
            mUnnoticed.push_back(End(user));
            break;
        case Act::kTellDeath:
            TellDeath();
            break;
        case Act::kRestartService:
            mService.reset();
            MakeService();
            break;
        case Act::kOpenCamera:
        case Act::kOpenUnlistedCamera:
            OpenCamera(number, act == Act::kOpenCamera);
            break;
        case Act::kCloseCamera:
            CloseCamera(number);
            break;
        case Act::kRefuseNextStart:
            mStream.startFault.FailCalls(1);
            break;
        case Act::kRefuseNextStop:
            mStream.stopFault.FailCalls(1);
            break;
        case Act::kRefuseNextCameraNotice:
            mStream.notifyFault.FailCalls(1);
            break;
        case Act::kDeliverFrame:
            static const auto event = std::make_unique<aov_event>();
            mManager->onCallback(event.get());
            break;
    }
    return "";
}

std::string RealWorld::Register(const Process& process, int32_t types) {
    // A new proxy object each time, of the one callback.
    const auto callback =
            RemoteCallback::IAONServiceCallBack::fromBinder(process.connection->Root());
    int64_t handle = 0;
    const auto status = mService->registerClient(callback, types, &handle);
    return status.getDescription() + " " + std::to_string(handle);
}

std::unique_ptr<Process> RealWorld::End(User user) {
    auto ended = std::exchange(At(user), nullptr);
    ended->connection->Kill();
    return ended;
}

void RealWorld::TellDeath() {
    if (mUnnoticed.empty()) return;
    mUnnoticed.front()->TellDeath();
    mUnnoticed.pop_front();
}

void RealWorld::OpenCamera(int device, bool listed) {
    ScriptedModules::Instance().SetNoModule(!listed);
    mManager->NotifyOpen(device);
    ScriptedModules::Instance().SetNoModule(false);
    AwaitCameraNotice();
    CloseCamera(kNoCamera);
}

void RealWorld::CloseCamera(int device) {
    mManager->NotifyClose(device);
    AwaitCameraNotice();
    // A notification waits for the one before it. That of no camera has nobody to tell: once the
    // stream has it, all that is left of it is to let go of the manager's lock, which Look takes.
    if (device != kNoCamera) CloseCamera(kNoCamera);
}

void RealWorld::AwaitCameraNotice() {
    ASSERT_TRUE(mCameraNotices.try_acquire_for(kPatience));
}

Outcome RealWorld::Look(std::string answer) {
    Outcome outcome{std::move(answer)};
    const int32_t types = mManager->GetServiceTypeStarted();
    const auto starts = mStream.TakeStarts();
    auto start = starts.begin();
    for (std::string call : mStream.TakeCalls()) {
        if (call.starts_with("getSensor") || call == "notify close") continue;
        if (call.starts_with("start ")) {
            call = Text("start", {start->sensorId, start->frameWidth, start->frameHeight,
                                  start->frameRate, start->mdFrameRate, start->serviceType});
            ++start;
        }
        outcome.push_back("the stream is asked: " + call);
    }
    outcome.push_back(Text(mStream.Running() ? "stream on, types" : "stream off, types", {types}));
    for (const User user : kUsers) {
        RecordingCallback& callback = *At(user)->local;
        const std::string who =
                NameOf(user) + " is told, handle " + std::to_string(callback.Handle()) + ": ";
        for (const auto& [sensor, state] : callback.TakeStates())
            outcome.push_back(who + Text("sensor and state", {sensor, state}));
        for (size_t frames = callback.TakeEvents().size(); frames != 0; --frames)
            outcome.push_back(who + "a frame");
    }
    return outcome;
}

}  // namespace zarvo::test
