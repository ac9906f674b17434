#include <functional>
#include <thread>

#include "tests/sessions/RecordedService.h"

/* Every call of the interface as the platform's own library puts it on a socket, one row each. Our
 * ends must say these bytes and understand them: once the test plays the client, once the server.
 */

namespace tests {
namespace {

class RecordedCallback : public BnAONServiceCallBack {
  public:
    ScopedAStatus onAONEvent(int64_t in_clientHandle, const AONCallBackInfo& in_info) override {
        EXPECT_EQ(in_info, kEvent);
        return Called("onAONEvent", in_clientHandle);
    }
    ScopedAStatus onSensorStateChanged(int64_t in_clientHandle,
                                       const AONSensorStateInfo& in_info) override {
        EXPECT_EQ(in_info, kState);
        return Called("onSensorStateChanged", in_clientHandle);
    }

    std::string called;

  private:
    ScopedAStatus Called(const char* method, int64_t handle) {
        EXPECT_EQ(handle, kHandle);
        called = method;
        return ScopedAStatus::ok();
    }
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

/** The outcome of a method that fails, if at all, with a status. */
binder_status_t Outcome(const ScopedAStatus& outcome) {
    EXPECT_EQ(outcome.isOk(), outcome.getStatus() == STATUS_OK);
    return outcome.getStatus();
}
std::shared_ptr<IAONService> ServiceOf(const SpAIBinder& root) {
    return IAONService::fromBinder(root);
}
std::shared_ptr<IAONServiceCallBack> CallbackOf(const SpAIBinder& root) {
    return IAONServiceCallBack::fromBinder(root);
}

const std::string kHandleHex = "0110000000000000";
const std::string kOk = "00000000";

const std::vector<RecordedCall> kServiceCalls = {
        {0x5F4E5446, "", kServiceToken, "",
         [](const SpAIBinder& root) { return ServiceOf(root) ? STATUS_OK : STATUS_BAD_TYPE; }},
        {0x5F504E47, "", "", "", [](const SpAIBinder& root) { return AIBinder_ping(root.get()); }},
        {1, kServiceToken + "000000000000000001000000", kOk + kHandleHex, "registerClient",
         [](const SpAIBinder& root) {
             int64_t handle = 0;
             const auto status = Outcome(ServiceOf(root)->registerClient(nullptr, 1, &handle));
             EXPECT_EQ(handle, kHandle);
             return status;
         }},
        {2, kServiceToken,
         "0000000001000000010000004c00000007000000010000000e0100005a00000002000000"
         "010000001800000040010000f000000002000000050000000a000000"
         "010000001400000080020000e0010000010000001e000000",
         "getAonSensorInfoList",
         [](const SpAIBinder& root) {
             std::vector<AONSensorInfo> sensors;
             const auto status = Outcome(ServiceOf(root)->getAonSensorInfoList(&sensors));
             EXPECT_EQ(sensors, kSensors);
             return status;
         }},
        {3,
         kServiceToken + kHandleHex +
                 "01000000240000000100000080020000e00100000a000000"
                 "00000000000000000200000003000000",
         kOk, "subscribeSensor",
         [](const SpAIBinder& root) {
             return Outcome(ServiceOf(root)->subscribeSensor(kHandle, kConfig));
         }},
        {4, kServiceToken + kHandleHex + "01000000", kOk, "startService",
         [](const SpAIBinder& root) { return Outcome(ServiceOf(root)->startService(kHandle, 1)); }},
        {5, kServiceToken + kHandleHex + "01000000", kOk, "stopService",
         [](const SpAIBinder& root) { return Outcome(ServiceOf(root)->stopService(kHandle, 1)); }},
        {6, kServiceToken + kHandleHex, kOk, "unsubscribeSensor",
         [](const SpAIBinder& root) {
             return Outcome(ServiceOf(root)->unsubscribeSensor(kHandle));
         }},
        {7, kServiceToken + kHandleHex, kOk, "unregisterClient",
         [](const SpAIBinder& root) {
             return Outcome(ServiceOf(root)->unregisterClient(kHandle));
         }},
        {0xFFFFFF, kServiceToken, kOk + "01000000", "",
         [](const SpAIBinder& root) {
             int32_t version = 0;
             const auto status = Outcome(ServiceOf(root)->getInterfaceVersion(&version));
             EXPECT_EQ(version, 1);
             return status;
         }},
        {0xFFFFFE, kServiceToken, kOk + Utf16(IAONService::hash), "",
         [](const SpAIBinder& root) {
             std::string hash;
             const auto status = Outcome(ServiceOf(root)->getInterfaceHash(&hash));
             EXPECT_EQ(hash, IAONService::hash);
             return status;
         }},
        {50, kServiceToken, "", "", [](const SpAIBinder& root) { return CallBare(root, 50); },
         STATUS_UNKNOWN_TRANSACTION},
        {1, kServiceToken, "", "", [](const SpAIBinder& root) { return CallBare(root, 1); },
         STATUS_NOT_ENOUGH_DATA},
};

const std::vector<RecordedCall> kCallbackCalls = {
        {0x5F4E5446, "", kCallbackToken, "",
         [](const SpAIBinder& root) { return CallbackOf(root) ? STATUS_OK : STATUS_BAD_TYPE; }},
        {1,
         kCallbackToken + kHandleHex +
                 "010000002400000001000000"
                 "0100000001000000140000000300000001000000020000002a000000",
         kOk, "onAONEvent",
         [](const SpAIBinder& root) {
             return Outcome(CallbackOf(root)->onAONEvent(kHandle, kEvent));
         }},
        {2, kCallbackToken + kHandleHex + "010000000c0000000700000002000000", kOk,
         "onSensorStateChanged",
         [](const SpAIBinder& root) {
             return Outcome(CallbackOf(root)->onSensorStateChanged(kHandle, kState));
         }},
};

RecordedCall AskSession(uint32_t code, const std::string& reply) {
    return {.code = code, .request = "", .reply = reply, .address = kSpecial};
}
const RecordedCall kAskThreads = AskSession(wire::kGetMaxThreads, "01000000");
const RecordedCall kAskId = AskSession(wire::kGetSessionId, "20000000" + std::string(64, '7'));
const RecordedCall kAskRoot = AskSession(wire::kGetRoot, "01000000" + kRoot + "3f000000");

/** Our server's answers to a recorded client, and what they call of its root. */
template <typename Root>
void ExpectAnswers(const std::vector<RecordedCall>& calls) {
    const auto root = SharedRefBase::make<Root>();
    Server server({}, root->asBinder().get());
    const Socket socket = server.Dial();
    Send(socket, kHello + kInit);
    EXPECT_EQ(Receive(socket, 8), "0100000000000000");
    const auto expectAnswer = [&](const RecordedCall& call) {
        SCOPED_TRACE(call.request);
        root->called.clear();
        Send(socket, call.Request());
        EXPECT_EQ(Receive(socket, call.Answer().size() / 2), call.Answer());
        EXPECT_EQ(root->called, call.method);
    };
    for (const RecordedCall& call : {kAskThreads, kAskRoot})
        expectAnswer(call);
    for (const RecordedCall& call : calls)
        expectAnswer(call);
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
    ExpectAnswers<RecordedService>(kServiceCalls);
    ExpectAnswers<RecordedCallback>(kCallbackCalls);
}

TEST(RecordedCalls, AreMadeByOurClient) {
    ExpectCalls(kServiceCalls);
    ExpectCalls(kCallbackCalls);
}

}  // namespace
}  // namespace tests
