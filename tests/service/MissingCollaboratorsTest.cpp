#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorInfo;

/** The service with collaborators of the test's choice. */
class PartialService : public aon::AONService {
  public:
    PartialService(std::shared_ptr<aon::RemoteCallbackManager> registry,
                   std::shared_ptr<aon::AONManager> manager,
                   std::shared_ptr<aon::AONManagerCallback> translator = nullptr)
        : AONService(std::move(registry), std::move(manager), std::move(translator)) {}
};

class MissingCollaborators : public testing::Test {
  protected:
    Lines TakeErrors() {
        Lines errors;
        for (const std::string& line : mLog.TakeTexts()) {
            if (line.starts_with("E: AONService: ") || line.starts_with("W: AONService: ")) {
                errors.push_back(line.substr(15));
            }
        }
        return errors;
    }

    const std::shared_ptr<aon::RemoteCallbackManager> mRegistry =
            std::make_shared<aon::RemoteCallbackManager>();
    const std::shared_ptr<aon::AONManager> mManager = std::make_shared<aon::AONManager>();
    const std::shared_ptr<RecordingCallback> mCallback =
            ndk::SharedRefBase::make<RecordingCallback>();
    LogRecorder mLog;
};

TEST_F(MissingCollaborators, AreNamedAtConstruction) {
    ndk::SharedRefBase::make<PartialService>(nullptr, mManager);
    EXPECT_EQ(mLog.TakeTexts(), (Lines{"I: AONService: Create AON Service",
                                       "E: AONService: Can not get RemoteCallBackManager",
                                       "I: AONService: AON service destroy",
                                       "I: AONManager: unregister callback success"}));
    ndk::SharedRefBase::make<PartialService>(mRegistry, nullptr);
    EXPECT_EQ(mLog.TakeTexts(),
              (Lines{"I: AONService: Create AON Service", "E: AONService: Can not get AONManager",
                     "I: AONService: AON service destroy",
                     "I: RemoteCallbackManager: RemoteCallbackManager clear"}));
}

TEST_F(MissingCollaborators, LetEveryOperationAnswerWithoutAManager) {
    const auto service = ndk::SharedRefBase::make<PartialService>(mRegistry, nullptr);
    TakeErrors();
    int64_t handle = 0;
    const std::string noManager = Error(1, "aon manager is null");
    EXPECT_EQ(service->registerClient(mCallback, 1, &handle).getDescription(), noManager);
    EXPECT_EQ(TakeErrors(), Lines{"aon manager is null"});
    std::vector<AONSensorInfo> sensors;
    EXPECT_EQ(service->getAonSensorInfoList(&sensors).getDescription(), Error(1, ""));
    EXPECT_EQ(TakeErrors(), Lines{"aon manager is null"});

    ASSERT_EQ(mRegistry->RegisterClient(mCallback, &handle), 0);
    TakeErrors();
    EXPECT_EQ(service->subscribeSensor(handle, RemoteClient::Config(1, 0)).getDescription(),
              Error(2, "service type need subset of register"));
    EXPECT_EQ(TakeErrors(), (Lines{"not register this clientHandle:1",
                                   "subscribe service type is subset of register service type"}));
    EXPECT_EQ(service->startService(handle, 1).getDescription(),
              Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(TakeErrors(), (Lines{"not subscribe this clientHandle:1",
                                   "start service type is subset of subscribe service type"}));
    EXPECT_EQ(service->stopService(handle, 1).getDescription(), Error(1, ""));
    EXPECT_EQ(service->unsubscribeSensor(handle).getDescription(), noManager);
    EXPECT_EQ(TakeErrors(), (Lines{"aon manager is null", "aon manager is null"}));
    EXPECT_EQ(service->unregisterClient(handle).getDescription(), kOk);
}

TEST_F(MissingCollaborators, LetEveryOperationAnswerWithoutARegistry) {
    const auto service = ndk::SharedRefBase::make<PartialService>(nullptr, mManager);
    TakeErrors();
    int64_t handle = 0;
    EXPECT_EQ(service->registerClient(mCallback, 1, &handle).getDescription(),
              Error(1, "RemoteCallBackManager is null"));
    EXPECT_EQ(TakeErrors(), Lines{"RemoteCallBackManager is null"});
    // Without a registry no handle is unknown; the checks behind answer.
    EXPECT_EQ(service->subscribeSensor(5, RemoteClient::Config(1, 1)).getDescription(),
              Error(2, "service type need subset of register"));
    EXPECT_EQ(service->startService(5, 1).getDescription(),
              Error(2, "start service type is subset of subscribe service type"));
    EXPECT_EQ(service->stopService(5, 0).getDescription(), kOk);
    EXPECT_EQ(service->unsubscribeSensor(5).getDescription(), kOk);
    TakeErrors();
    EXPECT_EQ(service->unregisterClient(5).getDescription(), kOk);
    EXPECT_EQ(TakeErrors(), Lines{"mRemoteCallBackManager is null"});
}

}  // namespace
}  // namespace zarvo::test
