#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <sys/socket.h>

#include <fstream>
#include <future>
#include <map>
#include <sstream>
#include <thread>

#include "tests/clients/RecordingCallback.h"
#include "tests/sessions/ServerTest.h"

namespace tests {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;
using ::zarvo::host::RpcClientSettings;
using ::zarvo::test::RecordingCallback;

// What was said when the sessions and calls were recorded.

constexpr int64_t kHandle = 0x1001;
const SensorConfigInfo kConfig{1, 640, 480, 10, 0, 0, 2, 3};
const std::vector<AONSensorInfo> kSensors{{7, 1, 270, 90, {{320, 240, {5, 10}}, {640, 480, {30}}}}};
const AONCallBackInfo kEvent{1, {{3, AONResultValue::make<AONResultValue::intValue>(42)}}};

/** Checks what it is called with; answers as the recorded service did. */
class RecordedService : public BnAONService {
  public:
    ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& in_callback,
                                 int32_t in_serviceType, int64_t* _aidl_return) override {
        callback = in_callback;
        *_aidl_return = kHandle;
        return Called("registerClient", kHandle, in_serviceType);
    }
    ScopedAStatus getAonSensorInfoList(std::vector<AONSensorInfo>* _aidl_return) override {
        *_aidl_return = kSensors;
        return Called("getAonSensorInfoList");
    }
    ScopedAStatus subscribeSensor(int64_t in_clientHandle,
                                  const SensorConfigInfo& in_config) override {
        EXPECT_EQ(in_config, kConfig);
        return Called("subscribeSensor", in_clientHandle);
    }
    ScopedAStatus startService(int64_t in_clientHandle, int32_t in_serviceType) override {
        return Called("startService", in_clientHandle, in_serviceType);
    }
    ScopedAStatus stopService(int64_t in_clientHandle, int32_t in_serviceType) override {
        return Called("stopService", in_clientHandle, in_serviceType);
    }
    ScopedAStatus unsubscribeSensor(int64_t in_clientHandle) override {
        return Called("unsubscribeSensor", in_clientHandle);
    }
    ScopedAStatus unregisterClient(int64_t in_clientHandle) override {
        return Called("unregisterClient", in_clientHandle);
    }

    std::shared_ptr<IAONServiceCallBack> callback;
    /** The methods called, in order. */
    std::vector<std::string> called;

  private:
    ScopedAStatus Called(const char* method, int64_t handle = kHandle, int32_t serviceType = 1) {
        EXPECT_EQ(handle, kHandle);
        EXPECT_EQ(serviceType, 1);
        called.emplace_back(method);
        return ScopedAStatus::ok();
    }
};

/** One message of the recording. */
struct Step {
    std::string socket;
    bool fromClient;
    std::string hex;
};

std::vector<Step> ReadRecording(const std::string& name) {
    std::ifstream file(RECORDINGS + name);
    std::vector<Step> steps;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        Step step;
        std::string direction;
        words >> step.socket >> direction >> step.hex;
        step.fromClient = direction == ">";
        if (step.socket != "#") steps.push_back(step);
    }
    return steps;
}

/** The far ends of a session's sockets, played by the test from the recording. */
class Player {
  public:
    explicit Player(bool isClient, const std::string& recording = "RecordedSession.txt")
        : mIsClient(isClient), mSteps(ReadRecording(recording)) {}

    /** Sends or expects every message up to the one whose bytes begin with `last`. */
    void PlayUntil(const std::string& last) {
        for (; mNext < mSteps.size(); ++mNext) {
            Play(mSteps[mNext]);
            if (mSteps[mNext].hex.starts_with(last)) break;
        }
        ++mNext;
    }
    void PlayToTheEnd() { PlayUntil("none"); }
    /** Whether all sockets have ended, and nothing came before that but what was played. */
    void ExpectEndOfAll() const {
        for (const auto& [name, socket] : sockets) {
            SCOPED_TRACE(name);
            uint8_t more = 0;
            EXPECT_EQ(socket.Receive(&more, 1), 0U);
        }
    }

    /** What the session's end calls to get a further socket. */
    std::function<Socket(const std::string& name)> open;
    std::map<std::string, Socket> sockets;

  private:
    void Play(Step& step) {
        SCOPED_TRACE(step.socket + ' ' + step.hex);
        if (!sockets.contains(step.socket)) sockets[step.socket] = open(step.socket);
        const Socket& socket = sockets[step.socket];
        // The id is the server's choice: a client reads it, and a server has sevens.
        if (const size_t id = step.hex.find("ID"); id != std::string::npos) {
            step.hex.replace(id, 2, mId.empty() ? std::string(64, '7') : mId);
        }
        if (step.fromClient == mIsClient) {
            Send(socket, step.hex);
            return;
        }
        const std::string received = Receive(socket, step.hex.size() / 2);
        if (mIsClient && step.hex.ends_with(std::string(64, '7'))) {
            mId = received.substr(step.hex.size() - 64);
            step.hex.replace(step.hex.size() - 64, 64, mId);
        }
        ASSERT_EQ(received, step.hex);
    }

    const bool mIsClient;
    std::vector<Step> mSteps;
    size_t mNext = 0;
    std::string mId;
};

constexpr char kLastReplyToClient[] =
        "020000001000000000000000000000000300000000000000010000000000";

TEST(RecordedSession, IsWhatAClientHearsFromOurServer) {
    const auto service = SharedRefBase::make<RecordedService>();
    Server server({.threads = 1, .acknowledgeWithReply = false}, service->asBinder().get());
    Player client(true);
    client.open = [&](const std::string&) { return server.Dial(); };
    // Up to the acknowledgement that follows the last call's reply.
    for (int i = 0; i < 3; ++i)
        client.PlayUntil(kLastReplyToClient);
    std::thread event([&] { EXPECT_TRUE(service->callback->onAONEvent(kHandle, kEvent).isOk()); });
    client.PlayToTheEnd();
    event.join();
    // The client goes, and the server's end of both sockets with it.
    shutdown(client.sockets["C2"].Fd(), SHUT_WR);
    shutdown(client.sockets["C1"].Fd(), SHUT_WR);
    client.ExpectEndOfAll();
    service->callback.reset();
}

TEST(RecordedSession, IsWhatAServerHearsFromOurClient) {
    Player server(false);
    std::map<std::string, std::promise<Socket>> dialled;
    server.open = [&](const std::string& name) { return dialled[name].get_future().get(); };
    dialled["C1"], dialled["C2"];
    RpcClientSettings settings;
    settings.acknowledgeWithReply = false;
    settings.dial = [&, name = '1'](auto) mutable {
        auto [near, far] = Socket::Pair();
        dialled[std::string("C") + name++].set_value(std::move(far));
        return std::move(near);
    };
    const auto callback = SharedRefBase::make<RecordingCallback>();
    std::promise<void> started;
    std::promise<void> over;
    std::thread client([&] {
        const auto session = ConnectRpc(settings);
        ASSERT_TRUE(session->OpenIncoming(1));
        const auto service = IAONService::fromBinder(SpAIBinder(AskRoot(*session).Release()));
        int64_t handle = 0;
        EXPECT_TRUE(service->registerClient(callback, 1, &handle).isOk());
        EXPECT_EQ(handle, kHandle);
        EXPECT_TRUE(service->startService(handle, 1).isOk());
        started.set_value();
        over.get_future().wait();
        session->Terminate();
        session->JoinThreads();
    });
    server.PlayUntil(
            "010000001800000000000000000000000000000004000000000000000000000000000000"
            "00000000");
    started.get_future().wait();
    server.PlayToTheEnd();
    over.set_value();
    client.join();
    server.ExpectEndOfAll();
    EXPECT_EQ(callback->TakeEvents(), std::vector{kEvent});
    EXPECT_EQ(callback->Handle(), kHandle);
}

/** What our server of the object answers to every recorded call; that our client makes the same
 * calls is seen wherever it calls our server. */
void ExpectAnswers(const SpAIBinder& root, const std::string& recording) {
    Server server({}, root.get());
    Player client(true, recording);
    client.open = [&](const std::string&) { return server.Dial(); };
    client.PlayToTheEnd();
}

TEST(RecordedCalls, AreAnsweredByOurServer) {
    const auto service = SharedRefBase::make<RecordedService>();
    ExpectAnswers(service->asBinder(), "RecordedServiceCalls.txt");
    EXPECT_EQ(service->called,
              (std::vector<std::string>{"registerClient", "getAonSensorInfoList", "subscribeSensor",
                                        "startService", "stopService", "unsubscribeSensor",
                                        "unregisterClient"}));
    const auto callback = SharedRefBase::make<RecordingCallback>();
    ExpectAnswers(callback->asBinder(), "RecordedCallbackCalls.txt");
    EXPECT_EQ(callback->TakeEvents(), std::vector{kEvent});
    EXPECT_EQ(callback->TakeStates(), (std::vector<RecordingCallback::State>{{7, 2}}));
    EXPECT_EQ(callback->Handle(), kHandle);
}

}  // namespace
}  // namespace tests
