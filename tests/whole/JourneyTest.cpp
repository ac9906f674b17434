#include <gtest/gtest.h>

#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"
#include "tests/clients/RemoteClient.h"

namespace zarvo::test {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONResult;
using aidl::vendor::zarvo::hardware::camera::aon::AONResultValue;

constexpr char kOk[] = "No error";

/** The library as it is shipped, on the simulated sensor. */
TEST(Journey, BringsEveryKindOfResultFromTheSensorToTheClient) {
    const auto service = ndk::SharedRefBase::make<aon::AONService>();
    RemoteClient client(service);
    ASSERT_EQ(client.Register(15), kOk);
    ASSERT_EQ(client.Subscribe(RemoteClient::Config(0, 15)), kOk);
    ASSERT_EQ(client.Start(15), kOk);
    ASSERT_TRUE(client.callback->WaitForEvents(3));
    const AONCallBackInfo info = client.callback->TakeEvents().back();
    EXPECT_EQ(info.serviceType, 15);
    std::map<int, const AONResultValue*> results;
    for (const AONResult& result : info.results)
        results[result.key] = &result.value;
    for (const int key : {0, 1, 2, 100, 101, 102, 103, 200, 300, 400, 700, 701, 702, 703}) {
        ASSERT_EQ(results.count(key), 1U) << key;
    }
    EXPECT_EQ(results[1]->toString(), "AONResultValue{intValue: 640}");
    EXPECT_EQ(results[2]->toString(), "AONResultValue{intValue: 480}");
    EXPECT_EQ(results[703]->get<AONResultValue::Tag::byteArray>().size(), 640U * 480 * 3 / 2);
    client.Unsubscribe();
    client.Unregister();
    host::SimulatorControl::Instance().Shutdown();
}

}  // namespace
}  // namespace zarvo::test
