// Calls of the host control with any parcels, while a client waits to be told of cameras: it
// refuses what cannot be, all that was ordered can be taken back, and then no sensor is busy.

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include <array>
#include <cstdlib>
#include <map>
#include <mutex>

#include "fuzz/Calls.h"
#include "fuzz/SmallService.h"
#include "host/control/HostControl.h"
#include "host/cutils/PropertyStore.h"
#include "service/AONService.h"

namespace {

using namespace aidl::vendor::zarvo::hardware::camera::aon;
using ndk::ScopedAStatus;
using zarvo::aon::AONService;
using zarvo::host::HostControl;
using zarvo::host::SimulatorControl;

/** Knows what it was told last of each sensor. */
class Client : public BnAONServiceCallBack {
  public:
    ScopedAStatus onAONEvent(int64_t /*handle*/, const AONCallBackInfo&) override { std::abort(); }
    ScopedAStatus onSensorStateChanged(int64_t /*handle*/,
                                       const AONSensorStateInfo& info) override {
        const std::lock_guard lock(mMutex);
        mStates[info.sensorId] = info.state;
        return ScopedAStatus::ok();
    }
    bool SeesAnyBusy() const {
        const std::lock_guard lock(mMutex);
        for (const auto& [sensor, state] : mStates)
            if (state != AONSensorStateInfo::SENSOR_STATE_IDLE) return true;
        return false;
    }

  private:
    mutable std::mutex mMutex;
    std::map<int32_t, int32_t> mStates;
};

/** The control of a service that has a client, whose stream ran once: since then cameras are told
 * to the service. */
class Bench {
  public:
    Bench() {
        zarvo::fuzz::SetSmallSensor(mSimulator);
        const int64_t handle = zarvo::fuzz::BeginClient(*mService, mClient);
        if (!mService->stopService(handle, AONService::SERVICE_TYPE_FUSION).isOk()) std::abort();
    }

    void Do(zarvo::fuzz::Input& input) {
        const std::array objects{mBinders[0].get(), mBinders[1].get()};
        zarvo::fuzz::CallWithParts(objects[1], input, objects);
    }
    void CheckRest() {
        bool isStreaming = true;
        std::vector<HostControl::CameraDevice> cameras;
        if (!mControl->clearFaults().isOk() || !mControl->isStreaming(&isStreaming).isOk() ||
            isStreaming || !mControl->listCameras(&cameras).isOk()) {
            std::abort();
        }
        // Cuts storms short, which may be long.
        mSimulator.Shutdown();
        for (const auto& camera : cameras)
            if (camera.isOpen) mControl->closeCamera(camera.instanceId);
        zarvo::fuzz::AwaitCameras(mSimulator);
        if (mClient->SeesAnyBusy()) std::abort();
        zarvo::host::PropertyStore::Instance().Clear();
    }

  private:
    SimulatorControl& mSimulator = SimulatorControl::Instance();
    const std::shared_ptr<AONService> mService = ndk::SharedRefBase::make<AONService>();
    const std::shared_ptr<HostControl> mControl =
            ndk::SharedRefBase::make<HostControl>(mService->asBinder());
    const std::shared_ptr<Client> mClient = ndk::SharedRefBase::make<Client>();
    const std::array<ndk::SpAIBinder, 2> mBinders{mService->asBinder(), mControl->asBinder()};
};

}  // namespace

/** The input is a list of calls. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static auto* const bench = new Bench();
    zarvo::fuzz::Input input(data, size);
    while (!input.IsEmpty())
        bench->Do(input);
    bench->CheckRest();
    return 0;
}
