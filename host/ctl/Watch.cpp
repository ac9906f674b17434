#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <android/binder_process.h>

#include <chrono>
#include <climits>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

#include "host/ctl/Command.h"
#include "host/ctl/Sensors.h"
#include "host/ctl/Service.h"
#include "host/text/EventJson.h"
#include "host/text/EventText.h"

namespace zarvo::host::ctl {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::BnAONServiceCallBack;
using std::chrono::steady_clock;

/** Something to tell, in a line; and what follows from it. */
struct News {
    enum Kind { kEvent, kState, kIdle, kBusy, kLeave, kDied };
    Kind kind;
    std::string line;
};

/** What threads of the process tell the main one. Thread-safe. */
class NewsQueue {
  public:
    void Push(News news) {
        const std::lock_guard lock(mMutex);
        // A reader who cannot follow misses events, never anything else.
        if (news.kind == News::kEvent && mNews.size() >= kMostWaiting) return;
        mNews.push_back(std::move(news));
        mChanged.notify_one();
    }
    /** The next, or a wish to leave once the time has come. */
    News Next(std::optional<steady_clock::time_point> end) {
        std::unique_lock lock(mMutex);
        const auto ready = [this] { return !mNews.empty(); };
        if (!end) mChanged.wait(lock, ready);
        if (end && !mChanged.wait_until(lock, *end, ready)) return {News::kLeave, {}};
        News news = std::move(mNews.front());
        mNews.pop_front();
        return news;
    }

  private:
    static constexpr size_t kMostWaiting = 64;

    std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<News> mNews;
};

/** Never destroyed: a notice of the service's death may come while the program ends. */
NewsQueue& Queue() {
    static auto* const queue = new NewsQueue();
    return *queue;
}

/** Turns what the service tells into news. It must not call the service, and does not wait. */
class Callback : public BnAONServiceCallBack {
  public:
    explicit Callback(bool json) : mJson(json) {}

    ndk::ScopedAStatus onAONEvent(int64_t, const AONCallBackInfo& info) override {
        Queue().Push({News::kEvent, mJson ? EventJson(info) : EventText(info)});
        return ndk::ScopedAStatus::ok();
    }
    ndk::ScopedAStatus onSensorStateChanged(int64_t, const AONSensorStateInfo& info) override {
        Queue().Push({KindOf(info), mJson ? StateJson(info) : StateText(info)});
        return ndk::ScopedAStatus::ok();
    }

  private:
    static News::Kind KindOf(const AONSensorStateInfo& info) {
        if (info.state == AONSensorStateInfo::SENSOR_STATE_IDLE) return News::kIdle;
        return info.state == AONSensorStateInfo::SENSOR_STATE_BUSY ? News::kBusy : News::kState;
    }

    const bool mJson;
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
        Queue().Push({News::kLeave, {}});
    }).detach();
}

/** One client's life. Used by the main thread. */
class Watcher {
  public:
    Watcher(std::shared_ptr<IAONService> service, const SensorConfigInfo& config)
        : mService(std::move(service)), mConfig(config) {}

    int Begin(bool json) {
        mCallback = ndk::SharedRefBase::make<Callback>(json);
        mDeath.set(AIBinder_DeathRecipient_new([](void*) { Queue().Push({News::kDied, {}}); }));
        AIBinder_linkToDeath(mService->asBinder().get(), mDeath.get(), nullptr);
        const int32_t types = mConfig.serviceType;
        int result = Report("register", mService->registerClient(mCallback, types, &mHandle));
        if (result != kDone) return result;
        result = Report("subscribe", mService->subscribeSensor(mHandle, mConfig));
        if (result == kDone) Start();
        return result;
    }
    /** Shows what comes until the count or the time is over, or somebody ends it. */
    int Run(int64_t count, std::optional<steady_clock::time_point> end) {
        while (count != 0) {
            const News news = Queue().Next(end);
            if (news.kind == News::kLeave) break;
            if (news.kind == News::kDied) return Gone();
            if (std::puts(news.line.c_str()) < 0 || std::fflush(stdout) != 0) break;
            if (news.kind == News::kEvent) --count;
            if (news.kind == News::kBusy) mStarted = false;
            if (news.kind == News::kIdle && !mStarted) Start();
        }
        return kDone;
    }
    /** Gives everything back. */
    int End() {
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
    static int Gone() {
        std::fputs("aonctl: the service went away\n", stderr);
        return kNoService;
    }

    const std::shared_ptr<IAONService> mService;
    const SensorConfigInfo mConfig;
    std::shared_ptr<Callback> mCallback;
    ndk::ScopedAIBinder_DeathRecipient mDeath;
    int64_t mHandle = 0;
    bool mStarted = false;
};

}  // namespace

int RunWatch(Arguments& arguments) {
    WatchSignals();
    ABinderProcess_startThreadPool();
    const int64_t count = arguments.Number("--count", -1, 1, INT64_MAX);
    const int64_t seconds = arguments.Number("--duration", -1, 0, 365L * 86400);
    if (!arguments.Error().empty()) return kMisused;
    const auto service = FindService();
    if (service == nullptr) return kNoService;
    std::vector<AONSensorInfo> sensors;
    int result = Report("list the sensors", service->getAonSensorInfoList(&sensors));
    if (result != kDone) return result;
    const SensorConfigInfo config = ChooseConfig(arguments, sensors);
    if (!arguments.Error().empty()) return kMisused;
    std::optional<steady_clock::time_point> end;
    if (seconds >= 0) end = steady_clock::now() + std::chrono::seconds(seconds);
    Watcher watcher(service, config);
    result = watcher.Begin(arguments.Has("--json"));
    if (result == kDone) result = watcher.Run(count, end);
    if (result == kNoService) return result;
    const int ended = watcher.End();
    return result == kDone ? ended : result;
}

}  // namespace zarvo::host::ctl
