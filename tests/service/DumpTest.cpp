#include <future>

#include "service/StatusReport.h"
#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using Dump = ServiceFixture;

TEST_F(Dump, TellsWhoIsThereWhatRunsAndWhatHappened) {
    ExpectParts(Look(), {"hash: 300d", "registered clients: none\n", "open cameras: none\n",
                         "running: no\n", "delivered: 0\n"});
    RemoteClient client(service);
    Run(client, 7, 3, 2);
    EXPECT_NE(client.Start(8), kOk);
    Deliver(3);
    ExpectParts(
            Look(),
            {"-  client 1  " + pid + "  uid " + std::to_string(getuid()),
             "-  client 1  registered 7 (fusion, face angle, gaze)  started 3 (fusion, face angle)",
             "subscribed yes  sensor 2  width 640  height 480  fps 10", "running: yes\n",
             "on sensor: 2\n", "running types: 3 (fusion, face angle)\n",
             "-  sensor 2  state started\n", "from the stream: 1\n", "delivered: 1\n",
             "last delivered ago: 0.", "inside clients: none\n",
             "change startService  " + pid +
                     "  client 1  types 8 (face feature)  reason start service type"});
    const auto manager = aon::AONManager::GetSingleton();
    manager->NotifyOpen(5);
    client.callback->WaitForStates(1);
    ExpectParts(Look(), {"-  camera 5  sensors 2\n", "-  sensor 2  state busy\n",
                         "change camera opened  camera 5\n",
                         "change stream stopped  sensor 2  reason for a camera\n"});
    client.Die();
    ExpectParts(Look(), {"registered clients: none\n", "change client died  client 1\n"});
    manager->NotifyClose(5);
    manager->NotifyClose(5);
}

TEST_F(Dump, CountsWhyEventsAreDropped) {
    RemoteClient client(service);
    Run(client, 1, 1);
    const auto callback = stream.Callback();
    aov_event event{};
    const auto deliver = [&] { callback->onCallback(&event); };
    deliver();
    stream.SetHooks({}, [&] { std::async(std::launch::async, deliver).get(); });
    client.Stop(1);
    EXPECT_EQ(TakeLines("AONManager")[0], "W: onCallback can not get lock");
    stream.SetHooks({}, {});
    callback->onCallback(nullptr);
    client.Die();
    deliver();
    ExpectParts(Look(),
                {"from the stream: 4\n", "dropped while the stream was changed: 1\n",
                 "dropped without record: 1\n", "dropped without client: 1\n", "delivered: 1\n"});
}

TEST_F(Dump, TellsTheMergeAsTheStreamGetsIt) {
    RemoteClient client(service);
    client.Register(3);
    auto config = RemoteClient::Config(1, 3);
    config.deliveryMode = -1;
    client.Subscribe(config);
    ExpectParts(Look(), {"fps 10  types 3 (fusion, face angle)  delivery mode -1\n",
                         "merged wishes:\n  started: 0\n  sensor: 1\n  width: 640\n"
                         "  height: 480\n  fps: 10\n  types: 3 (fusion, face angle)\n"
                         "  delivery mode: 1\n"});
}

TEST_F(Dump, KeepsTheStatesThatTheNextClientIsNotTold) {
    RemoteClient first(service), second(service);
    first.Register(3);
    const auto manager = aon::AONManager::GetSingleton();
    manager->NotifyOpen(5);
    first.callback->WaitForStates(1);
    second.Register(3);
    EXPECT_TRUE(second.callback->TakeStates().empty());
    ExpectParts(Look(), {"-  sensor 2  state busy\n", "change sensor states forgotten\n",
                         "change client replaced  " + pid + "  client 1\n"});
    manager->NotifyClose(5);
    manager->NotifyClose(5);
    EXPECT_EQ(Look().find("-  sensor 2"), std::string::npos);
}

TEST_F(Dump, TellsARefusedRestartApartFromTheStop) {
    RemoteClient client(service);
    Run(client, 3, 3);
    stream.startFault.FailCalls(1, 1);
    EXPECT_EQ(client.Stop(1), kOk);
    ExpectParts(Look(), {"change stopService  " + pid + "  client 1  types 1 (fusion)\n",
                         "change restart  " + pid +
                                 "  client 1  types 2 (face angle)  reason aon manager "
                                 "StartService failed\n"});
}

TEST_F(Dump, AnswersItsCallersOwnOperation) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    std::string seen;
    stream.SetHooks([&] { seen = Look(); }, {});
    client.Start(3);
    ExpectParts(seen, {"operation under way:\n  name: startService\n"});
}

TEST_F(Dump, RefusesWhatItDoesNotKnowWithItsHelp) {
    ExpectParts(Look({"--bla"}, STATUS_BAD_VALUE), {"usage: dump [-a] [--json] [--help]"});
    ExpectParts(Look({"--json", nullptr}, STATUS_BAD_VALUE), {"usage: dump"});
    ExpectParts(Look({"--json", "--help"}), {"usage: dump"});
    EXPECT_TRUE(Look({"-a"}).starts_with("service:\n"));
    EXPECT_TRUE(Look({"--json", "-a"}).starts_with("{"));
    EXPECT_EQ(service->dump(-1, nullptr, 0), STATUS_UNKNOWN_ERROR);
}

TEST_F(Dump, SpeaksJson) {
    ExpectParts(Look({"--json"}), {R"({"service":{"version":")", R"("registeredClients":[)",
                                   R"("wishes":[)", R"("stream":{)", "]}\n"});
    const auto writer = aon::MakeJsonWriter();
    writer->Begin("one thing");
    writer->Text("quoted text", "a \"b\" \\");
    writer->Flag("yes", true);
    writer->End();
    writer->BeginList("list");
    writer->Begin({});
    writer->Types("types", 3);
    writer->Numbers("many", std::array{1, -2});
    writer->Numbers("no", {});
    writer->Duration("for", std::chrono::microseconds(1500));
    writer->End();
    writer->Begin({});
    writer->End();
    writer->End();
    EXPECT_EQ(writer->Result(), R"({"oneThing":{"quotedText":"a \"b\" \\","yes":true},)"
                                R"("list":[{"types":3,"many":[1,-2],"no":[],"for":1},{}]})"
                                "\n");
}

TEST_F(Dump, GivesWhatItCouldNotKnowAnotherNameAndNothingANegativeAge) {
    aon::ServiceStatus status;
    status.created = aon::Moment::Now();
    const auto writer = aon::MakeJsonWriter();
    aon::ReportStatus(status, *writer);
    ExpectParts(writer->Result(), {R"("upFor":0})", R"("registeredClientsUnknown":"no registry")",
                                   R"("wishesUnknown":"somebody has the service's lock")",
                                   R"("streamUnknown":"no stream manager")"});
    EXPECT_EQ(writer->Result().find(R"("stream":)"), std::string::npos);
}

}  // namespace
}  // namespace zarvo::test
