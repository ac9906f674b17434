#include "host/soak/Life.h"

#include <string_view>
#include <utility>

namespace zarvo::host::soak {
namespace {

/** As every start is while a camera has the sensor. */
bool IsRefused(const ndk::ScopedAStatus& start) {
    return start.getExceptionCode() == EX_SERVICE_SPECIFIC &&
           std::string_view(start.getMessage()) == "aon manager StartService failed";
}

}  // namespace

Life::Life(ServiceProcess& service, Row& row, std::vector<int> states, Client::Besides besides)
    : mService(service),
      mRow(row),
      mClient(ndk::SharedRefBase::make<Client>(std::move(states), besides)) {
    if (!Must("register", mService.Service().registerClient(mClient, kTypes, &mHandle))) return;
    Check(mHandle == 1, "the handle is " + std::to_string(mHandle));
    Must("subscribe", mService.Service().subscribeSensor(mHandle, Config()));
}

Life::~Life() {
    if (mHandle == 0) return;
    IAONService& service = mService.Service();
    // Also after a finding: the next section begins with a service that nobody uses.
    for (const int device : mOpenCameras)
        Must("close a camera", mService.Controls().closeCamera(device));
    Must("stop", service.stopService(mHandle, kTypes));
    Must("unsubscribe", service.unsubscribeSensor(mHandle));
    Must("unregister", service.unregisterClient(mHandle));
    const std::string surprise = mClient->Surprise();
    Check(surprise.empty(), surprise);
    Check(!mGood || mClient->IsAtEndOfCycle(), "the last states were lost");
}

bool Life::Start() {
    return Must("start", mService.Service().startService(mHandle, kTypes));
}

bool Life::ExpectRefusedStart() {
    return Check(IsRefused(mService.Service().startService(mHandle, kTypes)),
                 "it was started under an open camera");
}

bool Life::Stop() {
    return Must("stop", mService.Service().stopService(mHandle, kTypes));
}

bool Life::OpenCamera(int device) {
    mOpenCameras.insert(device);
    return Must("open a camera", mService.Controls().openCamera(device));
}

bool Life::CloseCamera(int device) {
    mOpenCameras.erase(device);
    return Must("close a camera", mService.Controls().closeCamera(device));
}

bool Life::StormCamera(int device, uint64_t cycles) {
    return Must("begin a storm",
                mService.Controls().stormCamera(device, static_cast<int32_t>(cycles)));
}

bool Life::AwaitStates(uint64_t count, int sensor) {
    return Check(mClient->AwaitStates(count, sensor),
                 "only " + std::to_string(mClient->States(sensor)) + " states of sensor " +
                         std::to_string(sensor) + " came of " + std::to_string(count));
}

bool Life::StartUntilStates(uint64_t count, int sensor) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (mGood && mClient->States(sensor) < count && std::chrono::steady_clock::now() < end) {
        const ndk::ScopedAStatus start = mService.Service().startService(mHandle, kTypes);
        if (!IsRefused(start)) Must("start", start) && Stop();
    }
    return mGood && AwaitStates(count, sensor);
}

bool Life::AwaitEvents(uint64_t count) {
    return Check(mClient->AwaitEvents(count), "only " + std::to_string(mClient->Events()) +
                                                      " events came of " + std::to_string(count));
}

bool Life::ExpectStreaming(bool streaming) {
    return Check(mService.IsStreaming() == streaming,
                 streaming ? "the sensor does not stream" : "the sensor streams");
}

bool Life::Must(const char* call, const ndk::ScopedAStatus& status) {
    return Check(status.isOk(), std::string(call) + ": " + status.getDescription());
}

bool Life::Check(bool holds, const std::string& finding) {
    if (!holds) mRow.Find(finding);
    mGood = mGood && holds;
    return mGood;
}

}  // namespace zarvo::host::soak
