// Calls of the service and of a client's callback with any parcels, between frames, cameras and
// deaths. Whatever they were, the next client finds a service that it can use and that stops.

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include <array>
#include <cstdlib>
#include <vector>

#include "fuzz/Calls.h"
#include "fuzz/SmallService.h"
#include "service/AONService.h"

namespace {

using namespace aidl::vendor::zarvo::hardware::camera::aon;
using ndk::ScopedAStatus;
using zarvo::host::SimulatorControl;

class Client : public BnAONServiceCallBack {
  public:
    ScopedAStatus onAONEvent(int64_t /*handle*/, const AONCallBackInfo& info) override {
        mEvents += info.results.size() >= 3 ? 1 : 0;
        return ScopedAStatus::ok();
    }
    ScopedAStatus onSensorStateChanged(int64_t /*handle*/, const AONSensorStateInfo&) override {
        return ScopedAStatus::ok();
    }
    int TakeEvents() { return std::exchange(mEvents, 0); }

  private:
    int mEvents = 0;
};

constexpr int64_t kHandle = 1;

/** The service on a simulated sensor with small pictures, whose frames come by command. */
class Bench {
  public:
    Bench() { zarvo::fuzz::SetSmallSensor(mSimulator); }

    void Do(zarvo::fuzz::Input& input) {
        const std::array objects{mBinders[0].get(), mBinders[1].get(), mBinders[2].get()};
        switch (input.Take<uint8_t>() % 8) {
            case 0:
                mSimulator.DeliverOne();
                break;
            case 1:
                mSimulator.OpenCamera(input.Take<uint8_t>() % 3);
                zarvo::fuzz::AwaitCameras(mSimulator);
                break;
            case 2:
                mSimulator.CloseCamera(input.Take<uint8_t>() % 3);
                zarvo::fuzz::AwaitCameras(mSimulator);
                break;
            case 3:
                mService->OnRemoteCallbackDied(kHandle, mClient);
                break;
            case 4:
                zarvo::fuzz::CallWithParts(objects[0], input, objects);
                break;
            default:
                zarvo::fuzz::CallWithParts(objects[2], input, objects);
        }
    }
    /** Ends what is left, and lets an ordinary client have its frame. */
    void CheckUsable() {
        for (int device = 0; device < 3; ++device)
            mSimulator.CloseCamera(device);
        zarvo::fuzz::AwaitCameras(mSimulator);
        Leave();
        if (mSimulator.Running()) std::abort();
        const auto next = ndk::SharedRefBase::make<Client>();
        zarvo::fuzz::BeginClient(*mService, next);
        if (!GetsAFrame(*next) || !Leave().isOk() || mSimulator.Running()) std::abort();
        // What runs on would look like a leak.
        mSimulator.Shutdown();
    }

  private:
    using AONService = zarvo::aon::AONService;

    /** The service passes over a frame that comes while it does something else. */
    bool GetsAFrame(Client& client) {
        constexpr int kMostFrames = 1000;
        for (int i = 0; i < kMostFrames && mSimulator.DeliverOne(); ++i) {
            if (client.TakeEvents() == 1) return true;
        }
        return false;
    }
    /** As whoever is registered. */
    ScopedAStatus Leave() {
        constexpr int32_t kAll = 15;
        mService->stopService(kHandle, kAll);
        mService->unsubscribeSensor(kHandle);
        return mService->unregisterClient(kHandle);
    }

    SimulatorControl& mSimulator = SimulatorControl::Instance();
    const std::shared_ptr<AONService> mService = ndk::SharedRefBase::make<AONService>();
    const std::shared_ptr<Client> mClient = ndk::SharedRefBase::make<Client>();
    const std::shared_ptr<Client> mOther = ndk::SharedRefBase::make<Client>();
    /** An object that nobody holds as a binder would be another one each time. */
    const std::array<ndk::SpAIBinder, 3> mBinders{mClient->asBinder(), mOther->asBinder(),
                                                  mService->asBinder()};
};

}  // namespace

/** The input is a list of things that happen, each a byte and what it needs. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static auto* const bench = new Bench();
    zarvo::fuzz::Input input(data, size);
    while (!input.IsEmpty())
        bench->Do(input);
    bench->CheckUsable();
    return 0;
}
