#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONServiceCallBack.h>

#include <functional>
#include <thread>

#include "tests/sessions/ServerTest.h"

/* Every call of the interface as the platform's own library puts it on a socket, one row each. Our
 * ends must say these bytes and understand them: once the test plays the client, once the server.
 */

namespace tests {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;

constexpr int64_t kHandle = 0x1001;
const SensorConfigInfo kConfig{1, 640, 480, 10, 0, 0, 2, 3};
const std::vector<AONSensorInfo> kSensors{{7, 1, 270, 90, {{320, 240, {5, 10}}, {640, 480, {30}}}}};
const AONSensorStateInfo kState{7, 2};
const AONCallBackInfo kEvent{1, {{3, AONResultValue::make<AONResultValue::intValue>(42)}}};

/** Checks what it is called with; answers as the recorded service did. */
class RecordedService : public BnAONService {
  public:
    explicit RecordedService(std::string* called) : mCalled(*called) {}

    ScopedAStatus registerClient(const std::shared_ptr<IAONServiceCallBack>& in_callback,
                                 int32_t in_serviceType, int64_t* _aidl_return) override {
        EXPECT_EQ(in_callback, nullptr);
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

  private:
    ScopedAStatus Called(const char* method, int64_t handle = kHandle, int32_t serviceType = 1) {
        EXPECT_EQ(handle, kHandle);
        EXPECT_EQ(serviceType, 1);
        mCalled = method;
        return ScopedAStatus::ok();
    }

    std::string& mCalled;
};

class RecordedCallback : public BnAONServiceCallBack {
  public:
    explicit RecordedCallback(std::string* called) : mCalled(*called) {}

    ScopedAStatus onAONEvent(int64_t in_clientHandle, const AONCallBackInfo& in_info) override {
        EXPECT_EQ(in_info, kEvent);
        return Called("onAONEvent", in_clientHandle);
    }
    ScopedAStatus onSensorStateChanged(int64_t in_clientHandle,
                                       const AONSensorStateInfo& in_info) override {
        EXPECT_EQ(in_info, kState);
        return Called("onSensorStateChanged", in_clientHandle);
    }

  private:
    ScopedAStatus Called(const char* method, int64_t handle) {
        EXPECT_EQ(handle, kHandle);
        mCalled = method;
        return ScopedAStatus::ok();
    }

    std::string& mCalled;
};

std::string Utf16(std::string_view ascii) {
    std::string hex = U32(static_cast<uint32_t>(ascii.size()));
    for (const char c : ascii)
        hex += U32(static_cast<uint32_t>(c)).substr(0, 4);
    return hex + (ascii.size() % 2 == 0 ? kZeros.substr(0, 8) : kZeros.substr(0, 4));
}

const std::string kServiceToken = Utf16("vendor.zarvo.hardware.camera.aon.IAONService");
const std::string kCallbackToken = Utf16("vendor.zarvo.hardware.camera.aon.IAONServiceCallBack");

struct RecordedCall {
    uint32_t code;
    std::string request;
    std::string reply;
    /** The method of ours that it reaches, if any. */
    std::string method{};
    /** Makes the call with our client; what came of it. */
    std::function<binder_status_t(const SpAIBinder& root)> call{};
    binder_status_t status = STATUS_OK;
    std::string address = kRoot;

    std::string Request() const { return Call(address, code, request); }
    /** The callee acknowledges that it was called, and replies. */
    std::string Answer() const {
        const auto bytes = static_cast<uint32_t>(reply.size() / 2);
        const std::string body = U32(static_cast<uint32_t>(status)) + U32(bytes);
        const std::string acknowledged =
                address == kRoot ? Command(2, 16) + kRoot + U32(1) + U32(0) : "";
        return acknowledged + Command(1, 20 + bytes) + body + kZeros.substr(0, 24) + reply;
    }
};

/** Calls a method without arguments, by hand. */
binder_status_t CallBare(const SpAIBinder& root, transaction_code_t code) {
    AParcel* in = nullptr;
    ScopedAParcel out;
    AIBinder_prepareTransaction(root.get(), &in);
    return AIBinder_transact(root.get(), code, &in, out.getR(), 0);
}

/** A method called through the proxy of interface I, by a lambda that gives the outcome. */
template <typename I, typename Method>
auto Through(Method method) {
    return [method](const SpAIBinder& root) -> binder_status_t {
        const ScopedAStatus outcome = method(*I::fromBinder(root));
        EXPECT_EQ(outcome.isOk(), outcome.getStatus() == STATUS_OK);
        return outcome.getStatus();
    };
}

const std::string kHandleHex = "0110000000000000";
const std::string kOk = "00000000";

const std::vector<RecordedCall> kServiceCalls = {
        {0x5F4E5446, "", kServiceToken, "",
         [](const SpAIBinder& root) {
             return IAONService::fromBinder(root) == nullptr ? STATUS_BAD_TYPE : STATUS_OK;
         }},
        {0x5F504E47, "", "", "", [](const SpAIBinder& root) { return AIBinder_ping(root.get()); }},
        {1, kServiceToken + "000000000000000001000000", kOk + kHandleHex, "registerClient",
         Through<IAONService>([](IAONService& service) {
             int64_t handle = 0;
             auto outcome = service.registerClient(nullptr, 1, &handle);
             EXPECT_EQ(handle, kHandle);
             return outcome;
         })},
        {2, kServiceToken,
         "0000000001000000010000004c00000007000000010000000e0100005a00000002000000"
         "010000001800000040010000f000000002000000050000000a000000"
         "010000001400000080020000e0010000010000001e000000",
         "getAonSensorInfoList", Through<IAONService>([](IAONService& service) {
             std::vector<AONSensorInfo> sensors;
             auto outcome = service.getAonSensorInfoList(&sensors);
             EXPECT_EQ(sensors, kSensors);
             return outcome;
         })},
        {3,
         kServiceToken + kHandleHex +
                 "01000000240000000100000080020000e00100000a000000"
                 "00000000000000000200000003000000",
         kOk, "subscribeSensor", Through<IAONService>([](IAONService& service) {
             return service.subscribeSensor(kHandle, kConfig);
         })},
        {4, kServiceToken + kHandleHex + "01000000", kOk, "startService",
         Through<IAONService>(
                 [](IAONService& service) { return service.startService(kHandle, 1); })},
        {5, kServiceToken + kHandleHex + "01000000", kOk, "stopService",
         Through<IAONService>(
                 [](IAONService& service) { return service.stopService(kHandle, 1); })},
        {6, kServiceToken + kHandleHex, kOk, "unsubscribeSensor",
         Through<IAONService>(
                 [](IAONService& service) { return service.unsubscribeSensor(kHandle); })},
        {7, kServiceToken + kHandleHex, kOk, "unregisterClient",
         Through<IAONService>(
                 [](IAONService& service) { return service.unregisterClient(kHandle); })},
        {0xFFFFFF, kServiceToken, kOk + "01000000", "",
         Through<IAONService>([](IAONService& service) {
             int32_t version = 0;
             auto outcome = service.getInterfaceVersion(&version);
             EXPECT_EQ(version, 1);
             return outcome;
         })},
        {0xFFFFFE, kServiceToken, kOk + Utf16(IAONService::hash), "",
         Through<IAONService>([](IAONService& service) {
             std::string hash;
             auto outcome = service.getInterfaceHash(&hash);
             EXPECT_EQ(hash, IAONService::hash);
             return outcome;
         })},
        {50, kServiceToken, "", "", [](const SpAIBinder& root) { return CallBare(root, 50); },
         STATUS_UNKNOWN_TRANSACTION},
        {1, kServiceToken, "", "", [](const SpAIBinder& root) { return CallBare(root, 1); },
         STATUS_NOT_ENOUGH_DATA},
};

const std::vector<RecordedCall> kCallbackCalls = {
        {0x5F4E5446, "", kCallbackToken, "",
         [](const SpAIBinder& root) {
             return IAONServiceCallBack::fromBinder(root) == nullptr ? STATUS_BAD_TYPE : STATUS_OK;
         }},
        {1,
         kCallbackToken + kHandleHex +
                 "010000002400000001000000"
                 "0100000001000000140000000300000001000000020000002a000000",
         kOk, "onAONEvent", Through<IAONServiceCallBack>([](IAONServiceCallBack& callback) {
             return callback.onAONEvent(kHandle, kEvent);
         })},
        {2, kCallbackToken + kHandleHex + "010000000c0000000700000002000000", kOk,
         "onSensorStateChanged", Through<IAONServiceCallBack>([](IAONServiceCallBack& callback) {
             return callback.onSensorStateChanged(kHandle, kState);
         })},
};

RecordedCall AskSession(uint32_t code, const std::string& reply) {
    return {.code = code, .request = "", .reply = reply, .address = kSpecial};
}
const RecordedCall kAskThreads = AskSession(wire::kGetMaxThreads, "01000000");
const RecordedCall kAskId = AskSession(wire::kGetSessionId, "20000000" + std::string(64, '7'));
const RecordedCall kAskRoot = AskSession(wire::kGetRoot, "01000000" + kRoot + "3f000000");

/** Our server's answers to a recorded client; `called` is what its root says was called. */
void ExpectAnswers(const SpAIBinder& root, const std::vector<RecordedCall>& calls,
                   std::string* called) {
    const auto server = std::make_shared<RpcServer>(RpcServer::Settings{.threads = 1},
                                                    Ref<AIBinder>::Share(root.get()));
    auto [socket, far] = Socket::Pair();
    ASSERT_TRUE(server->Accept(std::move(far)));
    Send(socket, kHello + kInit);
    EXPECT_EQ(Receive(socket, 8), "0100000000000000");
    const auto expectAnswer = [&, &client = socket](const RecordedCall& call) {
        SCOPED_TRACE(call.request);
        called->clear();
        Send(client, call.Request());
        EXPECT_EQ(Receive(client, call.Answer().size() / 2), call.Answer());
        EXPECT_EQ(*called, call.method);
    };
    for (const RecordedCall& call : {kAskThreads, kAskRoot})
        expectAnswer(call);
    for (const RecordedCall& call : calls)
        expectAnswer(call);
    socket = {};
    server->Close();
    server->JoinThreads();
}

/** Our client's calls of a recorded server. */
void ExpectCalls(const std::vector<RecordedCall>& calls) {
    auto [near, socket] = Socket::Pair();
    std::thread server([&calls, &far = socket] {
        EXPECT_EQ(Receive(far, 24), Hex(BytesOf(kHello + kInit)));
        Send(far, "0100000000000000");
        const auto expectCall = [&far](const RecordedCall& call) {
            SCOPED_TRACE(call.request);
            EXPECT_EQ(Receive(far, call.Request().size() / 2), call.Request());
            Send(far, call.Answer());
        };
        for (const RecordedCall& call : {kAskThreads, kAskId, kAskRoot})
            expectCall(call);
        for (const RecordedCall& call : calls)
            expectCall(call);
    });
    const auto session = ConnectRpc({.dial = [&client = near](auto) { return std::move(client); }});
    ASSERT_NE(session, nullptr);
    const SpAIBinder root(AskRoot(*session).Release());
    for (const RecordedCall& call : calls)
        EXPECT_EQ(call.call(root), call.status) << call.method;
    session->Terminate();
    session->JoinThreads();
    server.join();
}

TEST(RecordedCalls, AreAnsweredByOurServer) {
    std::string called;
    const auto service = SharedRefBase::make<RecordedService>(&called);
    ExpectAnswers(service->asBinder(), kServiceCalls, &called);
    const auto callback = SharedRefBase::make<RecordedCallback>(&called);
    ExpectAnswers(callback->asBinder(), kCallbackCalls, &called);
}

TEST(RecordedCalls, AreMadeByOurClient) {
    ExpectCalls(kServiceCalls);
    ExpectCalls(kCallbackCalls);
}

}  // namespace
}  // namespace tests
