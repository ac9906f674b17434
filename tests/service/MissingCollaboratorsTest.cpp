#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;

/** The service with collaborators of the test's choice. */
class PartialService : public aon::AONService {
  public:
    PartialService(std::shared_ptr<aon::RemoteCallbackManager> registry,
                   std::shared_ptr<aon::AONManager> manager)
        : AONService(std::move(registry), std::move(manager), nullptr) {}
};

class MissingCollaborators : public testing::Test {
  protected:
    void Expect(const ndk::ScopedAStatus& status, const std::string& answer, const Lines& lines) {
        EXPECT_EQ(status.getDescription(), answer);
        Lines warnings;
        for (const std::string& line : mLog.TakeTexts()) {
            if (line.starts_with("E: AONService: ") || line.starts_with("W: AONService: "))
                warnings.push_back(line.substr(15));
        }
        EXPECT_EQ(warnings, lines);
    }

    const std::shared_ptr<aon::RemoteCallbackManager> mRegistry =
            std::make_shared<aon::RemoteCallbackManager>();
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
    const std::shared_ptr<RecordingCallback> mCallback =
            ndk::SharedRefBase::make<RecordingCallback>();
    LogRecorder mLog;
};

TEST_F(MissingCollaborators, LetEveryOperationAnswerWithoutAManager) {
    auto service = ndk::SharedRefBase::make<PartialService>(mRegistry, nullptr);
    EXPECT_EQ(mLog.TakeTexts(), (Lines{"I: AONService: Create AON Service",
                                       "E: AONService: Can not get AONManager"}));
    int64_t handle = 0;
    const std::string noManager = "aon manager is null";
    const std::string notRegistered = "service type need subset of register";
    const std::string notSubscribed = "start service type is subset of subscribe service type";
    Expect(service->registerClient(mCallback, 1, &handle), Error(1, noManager), {noManager});
    std::vector<AONSensorInfo> sensors;
    Expect(service->getAonSensorInfoList(&sensors), Error(1, ""), {noManager});
    ASSERT_EQ(mRegistry->RegisterClient(mCallback, &handle), 0);
    Expect(service->subscribeSensor(handle, RemoteClient::Config(1, 0)), Error(2, notRegistered),
           {"not register this clientHandle:1",
            "subscribe service type is subset of register service type"});
    Expect(service->startService(handle, 1), Error(2, notSubscribed),
           {"not subscribe this clientHandle:1", notSubscribed});
    Expect(service->stopService(handle, 1), Error(1, ""), {noManager});
    Expect(service->unsubscribeSensor(handle), Error(1, noManager), {noManager});
    Expect(service->unregisterClient(handle), kOk, {});
    service.reset();
    EXPECT_EQ(mLog.TakeTexts(), (Lines{"I: AONService: AON service destroy",
                                       "I: RemoteCallbackManager: RemoteCallbackManager clear"}));
}

TEST_F(MissingCollaborators, LetEveryOperationAnswerWithoutARegistry) {
    auto service = ndk::SharedRefBase::make<PartialService>(nullptr, mManager);
    EXPECT_EQ(mLog.TakeTexts(), (Lines{"I: AONService: Create AON Service",
                                       "E: AONService: Can not get RemoteCallBackManager"}));
    int64_t handle = 0;
    const std::string noRegistry = "RemoteCallBackManager is null";
    Expect(service->registerClient(mCallback, 1, &handle), Error(1, noRegistry), {noRegistry});
    // Without a registry no handle is unknown; the checks behind answer.
    EXPECT_EQ(service->subscribeSensor(5, RemoteClient::Config(1, 1)).getDescription(),
              Error(2, "service type need subset of register"));
    EXPECT_EQ(service->startService(5, 1).getDescription(),
              Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(service->stopService(5, 0).getDescription(), kOk);
    EXPECT_EQ(service->unsubscribeSensor(5).getDescription(), kOk);
    mLog.Take();
    Expect(service->unregisterClient(5), kOk, {"m" + noRegistry});
    service.reset();
    EXPECT_EQ(mLog.TakeTexts(), (Lines{"I: AONService: AON service destroy",
                                       "I: AONManager: unregister callback success"}));
}

}  // namespace
}  // namespace zarvo::test
