#include "tests/model/Model.h"

#include <algorithm>
#include <utility>

namespace zarvo::test {
namespace {

constexpr int32_t kTimeBased = 1;
constexpr int32_t kAllTypes = 0x3F;
enum State { kIdle, kStarted, kBusy };

std::string Refused(int code, const std::string& message) {
    return "Status(-8, EX_SERVICE_SPECIFIC): '" + std::to_string(code) + ": " + message + "'";
}

bool Within(int32_t types, int32_t all) {
    return (types & ~all) == 0;
}

bool Contains(const std::vector<int32_t>& list, int32_t value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

bool IsOffered(const Config& config) {
    if (!Contains(kSensors, config.sensorId) || !Within(config.serviceType, kAllTypes))
        return false;
    for (const Offer& offer : kOffers) {
        if (offer.width == config.frameWidth && offer.height == config.frameHeight) {
            return Contains(offer.rates, config.fps);
        }
    }
    return false;
}

/** The rate that the stream runs at; away from time-based delivery it may be slower. */
int32_t RateOf(const Config& config, int32_t types) {
    if (config.deliveryMode == kTimeBased) return config.fps;
    if (types == 5) return 2;
    if (types == 1) return 3;
    return config.fps;
}

/** Two modes agree if they are equal, or if one of them is time-based; -1 is no mode. */
std::optional<int32_t> CommonMode(int32_t a, int32_t b) {
    const int32_t mode = a == kTimeBased ? b : a;
    if (mode == -1 || (a != b && a != kTimeBased && b != kTimeBased)) return std::nullopt;
    return mode;
}

}  // namespace

Config MergeAll(const std::vector<Config>& configs) {
    Config merged;
    merged.sensorId = -1;
    if (configs.empty()) return merged;
    std::optional<int32_t> mode = kTimeBased;
    for (const Config& config : configs) {
        if (merged.sensorId == -1) merged.sensorId = config.sensorId;
        merged.frameWidth = std::max(merged.frameWidth, config.frameWidth);
        merged.frameHeight = std::max(merged.frameHeight, config.frameHeight);
        merged.fps = std::max(merged.fps, config.fps);
        merged.serviceType |= config.serviceType;
        if (mode) mode = CommonMode(*mode, config.deliveryMode);
    }
    merged.deliveryMode = mode.value_or(kTimeBased);
    return merged;
}

bool CanJoin(const Config& merged, const Config& wanted, bool running) {
    if (merged.sensorId == -1) return true;
    if (merged.sensorId != wanted.sensorId) return false;
    if (!running) return true;
    return wanted.fps <= merged.fps && wanted.frameWidth <= merged.frameWidth &&
           wanted.frameHeight <= merged.frameHeight &&
           Within(wanted.serviceType, merged.serviceType) &&
           CommonMode(merged.deliveryMode, wanted.deliveryMode).has_value();
}

// Clients.

Outcome Model::Do(const Step& step) {
    Outcome outcome{Happen(step)};
    for (std::string& call : std::exchange(mStreamCalls, {}))
        outcome.push_back("the stream is asked: " + std::move(call));
    outcome.push_back(Text(mStreamOn ? "stream on, types" : "stream off, types", {mRunningTypes}));
    for (const User user : kUsers) {
        for (const std::string& news : std::exchange(mTold[user], {}))
            outcome.push_back(NameOf(user) + " is told, handle 1: " + news);
    }
    return outcome;
}

std::string Model::Happen(const Step& step) {
    switch (step.act) {
        case Act::kRegister:
            return Register({step.user, mLives[step.user]}, step.number);
        case Act::kRegisterNothing:
            return "Status(-3, EX_ILLEGAL_ARGUMENT): ''";
        case Act::kSubscribe:
        case Act::kStart:
        case Act::kStop:
        case Act::kUnsubscribe:
        case Act::kUnregister:
            return Call(step);
        case Act::kDie:
            Forget(End(step.user));
            break;
        case Act::kDieUnnoticed:
            mUnnoticed.push_back(End(step.user));
            break;
        case Act::kTellDeath:
            if (mUnnoticed.empty()) break;
            Forget(mUnnoticed.front());
            mUnnoticed.pop_front();
            break;
        case Act::kRestartService:
            // The stream is left as it is; the next service finds it so.
            mClient.reset();
            mSensorStates.clear();
            break;
        case Act::kOpenCamera:
            OpenCamera(step.number, kCameras.at(step.number));
            break;
        case Act::kOpenUnlistedCamera:
            OpenCamera(step.number, {});
            break;
        case Act::kCloseCamera:
            CloseCamera(step.number);
            break;
        case Act::kRefuseNextStart:
            mRefuseStart = true;
            break;
        case Act::kRefuseNextStop:
            mRefuseStop = true;
            break;
        case Act::kRefuseNextCameraNotice:
            break;  // is logged, nothing else
        case Act::kDeliverFrame:
            TellClient("a frame");
            break;
    }
    return "";
}

std::string Model::Register(const Process& process, int32_t types) {
    if (mClient && mClient->process != process) {
        Forget(mClient->process);
        mSensorStates.clear();
    }
    if (!mClient) mClient = {.process = process};
    mClient->registered = types;
    for (const auto& [sensor, state] : mSensorStates)
        TellClient(Text("sensor and state", {sensor, state}));
    return kOk + " 1";
}

std::string Model::Call(const Step& step) {
    if (!mClient || step.user == User::kMallory) {
        return Refused(1, step.act == Act::kSubscribe ? "clientHandle not register"
                                                      : "in_clientHandle not register");
    }
    if (step.act == Act::kSubscribe) return Subscribe(step.config);
    if (step.act == Act::kStart) return Start(step.number);
    if (step.act == Act::kUnregister) return Unregister();
    step.act == Act::kStop ? Stop(step.number) : LetGo();
    return kOk;
}

std::string Model::Unregister() {
    if (mClient->started != 0) {
        return Refused(1, "not stop all service type, unregisterClient failed");
    }
    if (mClient->config) {
        return Refused(1, "not unsubscribe all service type, unregisterClient failed");
    }
    mClient.reset();
    return kOk;
}

Model::Process Model::End(User user) {
    const Process ended{user, mLives[user]++};
    mTold[user].clear();
    if (mClient && mClient->process == ended) mClient->alive = false;
    return ended;
}

void Model::Forget(const Process& process) {
    if (!mClient || mClient->process != process) return;
    LetGo();
    mClient.reset();
}

// Subscriptions.

Config Model::Merged() const {
    return mClient->config ? MergeAll({*mClient->config}) : MergeAll({});
}

std::string Model::Subscribe(const Config& config) {
    if (!Within(config.serviceType, mClient->registered)) {
        return Refused(2, "service type need subset of register");
    }
    if (!IsOffered(config)) return Refused(1, "config not support");
    const bool running = mRunningTypes != 0;
    if (!CanJoin(Merged(), config, running)) {
        return Refused(1, running ? "can support this config when sensor running"
                                  : "can support this config when other process use");
    }
    mClient->config = config;
    if (!running) mSubscribed = Merged();
    return kOk;
}

void Model::LetGo() {
    Stop(mClient->started);
    mClient->config.reset();
    mSubscribed = Config();
}

// Service types.

std::string Model::Start(int32_t types) {
    if (!mClient->config || !Within(types, mClient->config->serviceType)) {
        return Refused(2, "start service type is subset of subscribe service type");
    }
    if (mRunningTypes != 0 && !Within(types, mRunningTypes)) {
        return Refused(1, "sensor hub is running, please do start on other process stop");
    }
    mClient->started = types;
    if (mRunningTypes == 0 && !StartStream(types)) {
        mClient->started = 0;
        return Refused(1, "aon manager StartService failed");
    }
    return kOk;
}

void Model::Stop(int32_t types) {
    if (types == 0) return;
    const int32_t left = mClient->started & ~types;
    mClient->started = left;
    if (left != 0 && left == mRunningTypes) return;
    if (const auto sensor = StopStream()) Tell(*sensor, kIdle);
    if (left != 0) Start(left);
}

// The stream.

bool Model::IsHeldByCamera(int32_t sensor) const {
    return std::any_of(mOpenCameras.begin(), mOpenCameras.end(), [&](const auto& camera) {
        return camera.first != -1 && Contains(camera.second, sensor);
    });
}

bool Model::StartStream(int32_t types) {
    StopStream();
    if (IsHeldByCamera(mSubscribed.sensorId) || !AskStreamToStart(types)) return false;
    mRunningSensor = mSubscribed.sensorId;
    mRunningTypes = types;
    Tell(mSubscribed.sensorId, kStarted);
    return true;
}

bool Model::AskStreamToStart(int32_t types) {
    if (mStreamOn) return true;  // it refused to stop, and runs on with what it had
    const Config& config = mSubscribed;
    const int32_t motionRate = config.deliveryMode == kTimeBased ? 0 : config.fps;
    mStreamCalls.push_back(Text("start", {config.sensorId, config.frameWidth, config.frameHeight,
                                          RateOf(config, types), motionRate, types}));
    mStreamOn = !std::exchange(mRefuseStart, false);
    return mStreamOn;
}

std::optional<int32_t> Model::StopStream() {
    mRunningTypes = 0;
    const auto sensor = std::exchange(mRunningSensor, std::nullopt);
    if (!sensor) return sensor;
    mStreamCalls.emplace_back("stop");
    mStreamOn = std::exchange(mRefuseStop, false);
    return sensor;
}

void Model::OpenCamera(int device, const std::vector<int32_t>& sensors) {
    mStreamCalls.push_back(Text("notify open", sensors));
    // A camera that is open already keeps the sensors that it had.
    const auto& kept = mOpenCameras.emplace(device, sensors).first->second;
    const auto stopped = StopStream();
    for (const int32_t sensor : kept)
        Tell(sensor, kBusy);
    if (stopped && !Contains(kept, *stopped)) Tell(*stopped, kIdle);
}

void Model::CloseCamera(int device) {
    const auto sensors = std::exchange(mOpenCameras[device], {});
    mOpenCameras.erase(device);
    if (!sensors.empty()) mStreamCalls.push_back(Text("notify close", sensors));
    for (const int32_t sensor : sensors)
        Tell(sensor, kIdle);
}

// News.

void Model::Tell(int32_t sensor, int32_t state) {
    if (state == kIdle) {
        mSensorStates.erase(sensor);
    } else {
        mSensorStates[sensor] = state;
    }
    TellClient(Text("sensor and state", {sensor, state}));
}

void Model::TellClient(const std::string& news) {
    if (mClient && mClient->alive) mTold[mClient->process.user].push_back(news);
}

}  // namespace zarvo::test
