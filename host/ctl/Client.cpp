#include "host/ctl/Client.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <android/binder_process.h>

#include <climits>
#include <csignal>
#include <thread>

#include "host/ctl/Command.h"
#include "host/ctl/NewsQueue.h"
#include "host/ctl/Sensors.h"
#include "host/ctl/Service.h"

namespace zarvo::host::ctl {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack;
using std::chrono::steady_clock;

/** Never destroyed: a notice of the service's death may come while the program ends. */
NewsQueue& Queue() {
    static auto* const queue = new NewsQueue();
    return *queue;
}

template <typename What>
void Tell(What what) {
    Queue().Push({steady_clock::now(), std::move(what)});
}

/** Turns what the service tells into news. It must not call the service, and does not wait. */
class Callback : public BnAONServiceCallBack {
  public:
    ndk::ScopedAStatus onAONEvent(int64_t, const AONCallBackInfo& info) override {
        Tell(info);
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus onSensorStateChanged(int64_t, const AONSensorStateInfo& info) override {
        Tell(info);
        return ndk::ScopedAStatus::ok();
    }
};

/** Makes Ctrl-C and its like news, for threads made from here on, too. */
void WatchSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] {
        int signal = 0;
        sigwait(&signals, &signal);
        EndClient();
    }).detach();
}

/** One client's life. Used by the main thread. */
class Client {
  public:
    Client(std::shared_ptr<IAONService> service, const SensorConfigInfo& config, ClientSink& sink)
        : mService(std::move(service)), mConfig(config), mSink(sink) {}

    int Begin() {
        if (!mSink.OnConfig(mConfig)) return kFailed;
        mCallback = ndk::SharedRefBase::make<Callback>();
        mDeath.set(AIBinder_DeathRecipient_new([](void*) { Tell(Died()); }));
        AIBinder_linkToDeath(mService->asBinder().get(), mDeath.get(), nullptr);
        const int32_t types = mConfig.serviceType;
        int result = Report("register", mService->registerClient(mCallback, types, &mHandle));
        if (result != kDone) return result;
        result = Report("subscribe", mService->subscribeSensor(mHandle, mConfig));
        if (result == kDone) Start();
        return result;
    }
    /** Passes on what comes until the count or the time is over, or somebody ends it. */
    int Run(int64_t count, std::optional<ClientSink::Time> end) {
        while (count != 0) {
            const News news = Queue().Next(end);
            if (std::holds_alternative<Leave>(news.what)) break;
            if (std::holds_alternative<Died>(news.what)) return ReportGone();
            if (const auto* const event = std::get_if<AONCallBackInfo>(&news.what)) {
                if (!mSink.OnEvent(news.arrival, *event)) return kFailed;
                --count;
            }
            const auto* const state = std::get_if<AONSensorStateInfo>(&news.what);
            if (state != nullptr && !mSink.OnState(news.arrival, *state)) return kFailed;
            if (state != nullptr) Follow(*state);
        }
        return kDone;
    }
    /** Gives everything back. */
    int End() {
        if (mHandle == 0) return kDone;
        mService->stopService(mHandle, mConfig.serviceType);
        Report("unsubscribe", mService->unsubscribeSensor(mHandle));
        return Report("unregister", mService->unregisterClient(mHandle));
    }

  private:
    void Start() {
        // Refused while a camera has the sensor: the notice of its end starts it again.
        const int32_t types = mConfig.serviceType;
        mStarted = Report("start", mService->startService(mHandle, types)) == kDone;
    }
    void Follow(const AONSensorStateInfo& info) {
        if (info.state == AONSensorStateInfo::SENSOR_STATE_BUSY) mStarted = false;
        if (info.state == AONSensorStateInfo::SENSOR_STATE_IDLE && !mStarted) Start();
    }

    const std::shared_ptr<IAONService> mService;
    const SensorConfigInfo mConfig;
    ClientSink& mSink;
    std::shared_ptr<Callback> mCallback;
    ndk::ScopedAIBinder_DeathRecipient mDeath;
    int64_t mHandle = 0;
    bool mStarted = false;
};

}  // namespace

void EndClient() {
    Tell(Leave());
}

int RunClient(Arguments& arguments, ClientSink& sink) {
    const int64_t count = arguments.Number("--count", -1, 1, INT64_MAX);
    const int64_t seconds = arguments.Number("--duration", -1, 0, 365L * 86400);
    if (!arguments.Error().empty()) return kMisused;
    const auto service = FindService();
    if (service == nullptr) return kNoService;
    // Not before there is somebody to take leave of.
    WatchSignals();
    ABinderProcess_startThreadPool();
    std::vector<AONSensorInfo> sensors;
    int result = Report("list the sensors", service->getAonSensorInfoList(&sensors));
    if (result != kDone) return result;
    const SensorConfigInfo config = ChooseConfig(arguments, sensors);
    if (!arguments.Error().empty()) return kMisused;
    std::optional<ClientSink::Time> end;
    if (seconds >= 0) end = steady_clock::now() + std::chrono::seconds(seconds);
    Client client(service, config, sink);
    result = client.Begin();
    if (result == kDone) result = client.Run(count, end);
    const int ended = result == kNoService ? kNoService : client.End();
    if (!sink.OnEnd(Queue().EventsMissed())) return kFailed;
    return result == kDone ? ended : result;
}

}  // namespace zarvo::host::ctl
