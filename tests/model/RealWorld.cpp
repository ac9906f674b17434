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

std::map<int, std::vector<int>> WhatCamerasUse() {
    std::map<int, std::vector<int>> devices;
    for (const Camera& camera : kCameras)
        devices[camera.device] = camera.sensors;
    return devices;
}

int64_t HandleOf(User user) {
    return user == User::kMallory ? kMallorysHandle : kHandle;
}

std::string Text(const ndk::ScopedAStatus& status) {
    return status.isOk() ? kOk : status.getDescription();
}

}  // namespace

RealWorld::Processes& RealWorld::TheProcesses() {
    static Processes processes = [] {
        Processes first;
        for ([[maybe_unused]] const User user : kUsers)
            first.push_back(std::make_unique<Process>());
        return first;
    }();
    return processes;
}

RealWorld::RealWorld() {
    mStream.SetSensors(WhatSensorsOffer());
    ScriptedModules::Instance().SetDevices(WhatCamerasUse());
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

void RealWorld::RestartService() {
    mService.reset();
    MakeService();
}

std::string RealWorld::Register(User user, int32_t types) {
    int64_t handle = 0;
    const auto status = mService->registerClient(At(user)->Callback(), types, &handle);
    return status.isOk() ? Granted(handle) : Text(status);
}

std::string RealWorld::RegisterNothing() {
    int64_t handle = 0;
    return Text(mService->registerClient(nullptr, 1, &handle));
}

std::string RealWorld::Subscribe(User user, const Config& config) {
    return Text(mService->subscribeSensor(HandleOf(user), config));
}

std::string RealWorld::Start(User user, int32_t types) {
    return Text(mService->startService(HandleOf(user), types));
}

std::string RealWorld::Stop(User user, int32_t types) {
    return Text(mService->stopService(HandleOf(user), types));
}

std::string RealWorld::Unsubscribe(User user) {
    return Text(mService->unsubscribeSensor(HandleOf(user)));
}

std::string RealWorld::Unregister(User user) {
    return Text(mService->unregisterClient(HandleOf(user)));
}

std::unique_ptr<Process> RealWorld::End(User user) {
    auto ended = std::exchange(At(user), std::make_unique<Process>());
    ended->Kill();
    return ended;
}

void RealWorld::Die(User user) {
    End(user)->TellDeath();
}

void RealWorld::DieUnnoticed(User user) {
    mUnnoticed.push_back(End(user));
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
    WaitForCameraWork();
}

void RealWorld::CloseCamera(int device) {
    mManager->NotifyClose(device);
    AwaitCameraNotice();
    WaitForCameraWork();
}

void RealWorld::WaitForCameraWork() {
    // A notification waits for the one before it. This one has nobody to tell: once the stream
    // has it, all that is left of it is to let go of the manager's lock, which we then take.
    mManager->NotifyClose(kNoCamera);
    AwaitCameraNotice();
    mManager->GetServiceTypeStarted();
}

void RealWorld::AwaitCameraNotice() {
    ASSERT_TRUE(mCameraNotices.try_acquire_for(kPatience));
}

void RealWorld::DeliverFrame() {
    static const auto event = std::make_unique<aov_event>();
    mManager->onCallback(event.get());
}

std::vector<std::string> RealWorld::TakeStreamCalls() {
    auto starts = mStream.TakeStarts();
    auto start = starts.begin();
    std::vector<std::string> calls;
    for (const std::string& call : mStream.TakeCalls()) {
        if (call.starts_with("start ")) {
            calls.push_back(StartText(start->sensorId, start->frameWidth, start->frameHeight,
                                      start->frameRate, start->mdFrameRate, start->serviceType));
            ++start;
        } else if (!call.starts_with("getSensor") && call != NoticeText({}, false)) {
            calls.push_back(call);
        }
    }
    return calls;
}

Outcome RealWorld::Look(std::string answer) {
    Outcome outcome{std::move(answer),
                    {},
                    TakeStreamCalls(),
                    RunningText(mManager->GetServiceTypeStarted(), mStream.Running())};
    for (const User user : kUsers) {
        for (const std::string& news : At(user)->TakeNews())
            outcome.told.push_back(std::string(NameOf(user)) + ": " + news);
    }
    return outcome;
}

}  // namespace zarvo::test
