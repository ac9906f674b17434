#pragma once

#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "service/AONService.h"
#include "tests/clients/Dump.h"
#include "tests/clients/RemoteClient.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/ScriptedModules.h"
#include "tests/support/ScriptedStream.h"

namespace zarvo::test {

using Lines = std::vector<std::string>;

inline constexpr char kOk[] = "No error";

/** The description of a service-specific error. */
inline std::string Error(int code, const std::string& message) {
    return "Status(-8, EX_SERVICE_SPECIFIC): '" + std::to_string(code) + ": " + message + "'";
}

/** The service on the scripted stream with two sensors, 1 and 2, and a camera device 5 on 2. */
class ServiceFixture : public testing::Test {
  protected:
    ServiceFixture() {
        const auto sizes = std::vector{ScriptedStream::Record(640, 480, 0, {5, 10, 15}),
                                       ScriptedStream::Record(320, 240, 0, {5, 10})};
        stream.SetSensors({{1, sizes}, {2, sizes}});
        ScriptedModules::Instance().SetDevices({{5, {2}}});
    }

    /** The lines of one class, without its name. */
    Lines TakeLines(const std::string& who = "AONService") {
        Lines lines;
        for (const std::string& line : log.TakeTexts()) {
            if (line.substr(3).starts_with(who + ": ")) {
                lines.push_back(line.substr(0, 3) + line.substr(who.size() + 5));
            }
        }
        return lines;
    }

    /** Brings a client to running; no call or line is noted then. */
    void Run(RemoteClient& client, int registered, int started, int sensorId = 1) {
        ASSERT_EQ(client.Register(registered), kOk);
        ASSERT_EQ(client.Subscribe(RemoteClient::Config(sensorId, registered)), kOk);
        ASSERT_EQ(client.Start(started), kOk);
        log.Take();
        stream.TakeCalls();
        client.callback->TakeStates();
    }

    /** Looks at the service as `dumpsys` does. */
    std::string Look(const std::vector<const char*>& args = {},
                     binder_status_t expected = STATUS_OK) {
        return DumpOf(service->asBinder().get(), args, expected);
    }
    static void ExpectParts(const std::string& text, const std::vector<std::string>& parts) {
        for (const std::string& part : parts)
            EXPECT_NE(text.find(part), std::string::npos) << part << " is not in\n" << text;
    }
    void Deliver(uint32_t serviceType) {
        const auto event = std::make_unique<aov_event>();
        event->serviceType = serviceType;
        stream.Callback()->onCallback(event.get());
    }

    const std::string pid = "pid " + std::to_string(getpid());
    ScriptedStream& stream = ScriptedStream::Instance();
    LogRecorder log;
    std::shared_ptr<aon::AONService> service = ndk::SharedRefBase::make<aon::AONService>();
};

}  // namespace zarvo::test
