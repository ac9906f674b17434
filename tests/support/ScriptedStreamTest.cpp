#include "tests/support/ScriptedStream.h"

#include <gtest/gtest.h>

#include "tests/support/ScriptedModules.h"

namespace zarvo::test {
namespace {

class Callback : public IAovStreamCallback {
  public:
    void onCallback(aov_event*) override {}
    void NotifyOpen(int) override {}
    void NotifyClose(int) override {}
};

TEST(ScriptedStream, AnswersAsToldAndRemembersWhatItWasAsked) {
    ScriptedStream& script = ScriptedStream::Instance();
    script.SetSensors({{2, {ScriptedStream::Record(640, 480, 9, {1, 3})}}, {0, {}}});
    script.SetMode(2, -5, 3);
    script.startFault.FailCalls(1);
    script.stopFault.FailCalls(1);
    int started = 0;
    script.SetHooks([&] { started += script.Running() ? 10 : 1; }, {});

    IAOVStream* stream = IAOVStream::createInstance();
    ASSERT_EQ(stream, &script);
    EXPECT_EQ(stream->getSensorIdList(), (std::vector<int>{2, 0}));
    EXPECT_EQ(stream->getSensorInfo(2).at(0).rates, (std::vector<int32_t>{1, 3}));
    int mode = 0;
    EXPECT_EQ(stream->getSensorMode(2, &mode), -5);
    EXPECT_EQ(mode, 3);

    auto callback = std::make_shared<Callback>();
    user_param param{};
    param.sensorId = 2;
    param.AovStreamCallback = callback;
    EXPECT_FALSE(stream->start(&param));
    EXPECT_EQ(script.Callback(), nullptr);
    EXPECT_TRUE(stream->start(&param));
    param.AovStreamCallback.reset();
    EXPECT_EQ(callback.use_count(), 2) << "the stream shares it while it runs";
    EXPECT_EQ(script.Starts().size(), 2u);
    EXPECT_TRUE(stream->notifyCameraStatus({0, 2}, true));
    EXPECT_FALSE(stream->stop());
    EXPECT_TRUE(stream->stop());
    EXPECT_EQ(callback.use_count(), 1);
    EXPECT_EQ(script.Callback(), callback);
    EXPECT_EQ(started, 2);
    EXPECT_EQ(script.TakeCalls(),
              (std::vector<std::string>{"getSensorIdList", "getSensorInfo 2", "getSensorMode 2",
                                        "start 2", "start 2", "notify open 0,2", "stop", "stop"}));
    script.SetNoStream(true);
    EXPECT_EQ(IAOVStream::createInstance(), nullptr);
}

TEST(ScriptedModules, AnswerAsTold) {
    ScriptedModules& script = ScriptedModules::Instance();
    script.SetDevices({{5, {2, 3}}});
    const MtkcamModuleFactory factory = getMtkcamModuleFactory(0x30001);
    ASSERT_NE(factory, nullptr);
    auto* list = static_cast<HalLogicalDeviceList*>(factory());
    EXPECT_EQ(list->getSensorIdsOfDevice(5), (std::vector<int>{2, 3}));
    script.SetNoModule(true);
    EXPECT_EQ(factory(), nullptr);
    script.SetNoFactory(true);
    EXPECT_EQ(getMtkcamModuleFactory(0x30001), nullptr);
    EXPECT_EQ(script.AskedModules(), (std::vector<uint32_t>{0x30001, 0x30001}));
}

}  // namespace
}  // namespace zarvo::test
