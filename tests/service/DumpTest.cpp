#include <sys/mman.h>
#include <unistd.h>

#include <future>

#include "service/StatusWriter.h"
#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

/** Looks at the service as `dumpsys` does. */
class Dump : public ServiceFixture {
  protected:
    std::string Look(std::vector<const char*> args = {}, binder_status_t expected = STATUS_OK) {
        const int fd = memfd_create("dump", MFD_CLOEXEC);
        EXPECT_EQ(AIBinder_dump(service->asBinder().get(), fd, args.data(),
                                static_cast<uint32_t>(args.size())),
                  expected);
        std::string text(static_cast<size_t>(lseek(fd, 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(fd, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        close(fd);
        return text;
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
};

TEST_F(Dump, TellsWhoIsThereWhatRunsAndWhatHappened) {
    ExpectParts(Look(), {"hash: 300d", "registered clients: none\n", "open cameras: none\n",
                         "running: no\n", "delivered: 0\n"});
    RemoteClient client(service);
    Run(client, 7, 3, 2);
    EXPECT_NE(client.Start(8), kOk);
    Deliver(3);
    ExpectParts(
            Look(),
            {"-  client 1  pid " + std::to_string(getpid()) + "  uid " + std::to_string(getuid()),
             "-  client 1  registered 7 (fusion, face angle, gaze)  started 3 (fusion, face angle)",
             "subscribed yes  sensor 2  width 640  height 480  fps 10", "running: yes\n",
             "on sensor: 2\n", "running types: 3 (fusion, face angle)\n",
             "-  sensor 2  state started\n", "from the stream: 1\n", "delivered: 1\n",
             "last delivered ago: 0.", "inside clients: none\n",
             "change startService  client 1  types 8 (face feature)  reason start service type"});
    const auto manager = aon::AONManager::GetSingleton();
    manager->NotifyOpen(5);
    client.callback->WaitForStates(1);
    ExpectParts(Look(), {"-  camera 5  sensors 1  first sensor 2\n", "-  sensor 2  state busy\n",
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
    stream.SetHooks({}, {});
    client.Die();
    deliver();
    ExpectParts(Look(), {"from the stream: 3\n", "dropped while the stream was changed: 1\n",
                         "dropped without client: 1\n", "delivered: 1\n"});
}

TEST_F(Dump, AnswersWhileAClientHangsInItsCallback) {
    RemoteClient client(service);
    client.Register(3);
    client.Subscribe(RemoteClient::Config(1, 3));
    std::promise<void> inside, release;
    client.callback->SetInState([&, first = true]() mutable {
        if (!std::exchange(first, false)) return;
        inside.set_value();
        release.get_future().wait();
    });
    auto starting = std::async(std::launch::async, [&] { return client.Start(3); });
    inside.get_future().wait();
    ExpectParts(Look(), {"operation under way:\n  name: startService\n",
                         "-  client 1  callback onSensorStateChanged  for ",
                         "wishes: an operation has the service's lock\n", "running: yes\n"});
    release.set_value();
    EXPECT_EQ(starting.get(), kOk);
    EXPECT_EQ(Look().find("operation under way"), std::string::npos);
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
    ExpectParts(Look({"--bla"}, STATUS_BAD_VALUE), {"usage: dump [--json] [--help]"});
    ExpectParts(Look({"--json", nullptr}, STATUS_BAD_VALUE), {"usage: dump"});
    ExpectParts(Look({"--json", "--help"}), {"usage: dump"});
    EXPECT_EQ(service->dump(-1, nullptr, 0), STATUS_UNKNOWN_ERROR);
}

TEST_F(Dump, SpeaksJson) {
    const std::string text = Look({"--json"});
    EXPECT_TRUE(text.starts_with(R"({"service":{"version":")")) << text;
    EXPECT_TRUE(text.ends_with("]}\n")) << text;
    const auto writer = aon::MakeJsonWriter();
    writer->Begin("one thing");
    writer->Text("quoted text", "a \"b\" \\");
    writer->Flag("yes", true);
    writer->End();
    writer->BeginList("list");
    writer->Begin({});
    writer->Types("types", 3);
    writer->Duration("for", std::chrono::microseconds(1500));
    writer->End();
    writer->Begin({});
    writer->End();
    writer->End();
    EXPECT_EQ(writer->Result(), R"({"oneThing":{"quotedText":"a \"b\" \\","yes":true},)"
                                R"("list":[{"types":3,"for":1},{}]})"
                                "\n");
}

}  // namespace
}  // namespace zarvo::test
