#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <fstream>
#include <future>
#include <map>
#include <sstream>

#include "host/binder/rpc/RpcClient.h"
#include "host/binder/rpc/RpcServer.h"
#include "tests/binder/Hex.h"
#include "tests/clients/RecordingCallback.h"

namespace tests {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;
using namespace ::zarvo::host;
using ::ndk::ScopedAStatus;
using ::zarvo::test::RecordingCallback;

/** One message of the recording. */
struct Step {
    std::string socket;
    bool fromClient;
    std::string hex;
};

std::vector<Step> ReadRecording() {
    std::ifstream file(RECORDED_SESSION);
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
    explicit Player(bool isClient) : mIsClient(isClient) {}

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
        std::vector<uint8_t> bytes = BytesOf(step.hex);
        if (step.fromClient == mIsClient) {
            std::array part{iovec{bytes.data(), bytes.size()}};
            ASSERT_TRUE(socket.Send(part));
            return;
        }
        std::vector<uint8_t> received(bytes.size());
        ASSERT_TRUE(socket.ReceiveAll(received.data(), received.size()));
        if (mIsClient && step.hex.ends_with(std::string(64, '7'))) {
            mId = Hex(received).substr(step.hex.size() - 64);
            step.hex.replace(step.hex.size() - 64, 64, mId);
        }
        EXPECT_EQ(Hex(received), step.hex);
    }

    const bool mIsClient;
    std::vector<Step> mSteps = ReadRecording();
    size_t mNext = 0;
    std::string mId;
};

constexpr char kLastReplyToClient[] =
        "020000001000000000000000000000000300000000000000010000000000";

/** Answers as the recorded service did. */
class RecordedService : public BnAONService {
  public:
    ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& in_callback, int32_t,
                                 int64_t* _aidl_return) override {
        callback = in_callback;
        *_aidl_return = 0x1001;
        return ScopedAStatus::ok();
    }
    ScopedAStatus startService(int64_t, int32_t) override { return ScopedAStatus::ok(); }
    ScopedAStatus getAonSensorInfoList(std::vector<AONSensorInfo>*) override { return Not(); }
    ScopedAStatus subscribeSensor(int64_t, const SensorConfigInfo&) override { return Not(); }
    ScopedAStatus stopService(int64_t, int32_t) override { return Not(); }
    ScopedAStatus unsubscribeSensor(int64_t) override { return Not(); }
    ScopedAStatus unregisterClient(int64_t) override { return Not(); }

    std::shared_ptr<IAONServiceCallBack> callback;

  private:
    static ScopedAStatus Not() { return ScopedAStatus::fromStatus(STATUS_UNKNOWN_TRANSACTION); }
};

AONCallBackInfo RecordedEvent() {
    AONCallBackInfo info;
    info.serviceType = 1;
    AONResult result;
    result.key = 3;
    result.value.set<AONResultValue::intValue>(42);
    info.results.push_back(result);
    return info;
}

TEST(RecordedSession, IsWhatAClientHearsFromOurServer) {
    const auto service = ndk::SharedRefBase::make<RecordedService>();
    const auto server = std::make_shared<RpcServer>(
            RpcServer::Settings{.threads = 1, .acknowledgeWithReply = false},
            Ref<AIBinder>::Share(service->asBinder().get()));
    Player client(true);
    client.open = [&](const std::string&) {
        auto [near, far] = Socket::Pair();
        EXPECT_TRUE(server->Accept(std::move(far)));
        return std::move(near);
    };
    // Up to the acknowledgement that follows the last call's reply.
    for (int i = 0; i < 3; ++i)
        client.PlayUntil(kLastReplyToClient);
    std::thread event(
            [&] { EXPECT_TRUE(service->callback->onAONEvent(0x1001, RecordedEvent()).isOk()); });
    client.PlayToTheEnd();
    event.join();
    // The client goes, and the server's end of both sockets with it.
    shutdown(client.sockets["C2"].Fd(), SHUT_WR);
    shutdown(client.sockets["C1"].Fd(), SHUT_WR);
    client.ExpectEndOfAll();
    service->callback.reset();
    server->Close();
    server->JoinThreads();
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
    const auto callback = ndk::SharedRefBase::make<RecordingCallback>();
    std::promise<void> started;
    std::promise<void> over;
    std::thread client([&] {
        const auto session = ConnectRpc(settings);
        ASSERT_TRUE(session->OpenIncoming(1));
        const ndk::SpAIBinder root(AskRoot(*session).Release());
        const auto service = IAONService::fromBinder(root);
        int64_t handle = 0;
        EXPECT_TRUE(service->registerClient(callback, 1, &handle).isOk());
        EXPECT_EQ(handle, 0x1001);
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
    ASSERT_EQ(callback->TakeEvents().size(), 1U);
    EXPECT_EQ(callback->Handle(), 0x1001);
}

}  // namespace
}  // namespace tests
