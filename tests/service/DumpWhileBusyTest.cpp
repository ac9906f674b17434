#include <functional>
#include <future>

#include "tests/service/ServiceFixture.h"

namespace zarvo::test {
namespace {

using Hook = std::function<void()>;

/** Something hangs, somewhere inside, and others look. */
class DumpWhileBusy : public ServiceFixture {
  protected:
    /** Runs what comes to the hook that it is given, once, and gives what is seen while it is held
     * up there. */
    std::string LookDuring(const std::function<void(const Hook& hang)>& busy) {
        std::promise<void> inside, release;
        auto working = std::async(std::launch::async, busy, [&] {
            inside.set_value();
            release.get_future().wait();
        });
        inside.get_future().wait();
        auto looking = std::async(std::launch::async, [&] { return Look(); });
        EXPECT_EQ(looking.wait_for(kPatience), std::future_status::ready);
        release.set_value();
        working.get();
        EXPECT_EQ(Look().find("operation under way"), std::string::npos);
        return looking.get();
    }
};

TEST_F(DumpWhileBusy, AnswersWhileTheStreamHangs) {
    RemoteClient client(service);
    Run(client, 3, 3);
    const std::string seen = LookDuring([&](const Hook& hang) {
        stream.SetHooks({}, hang);
        client.Stop(3);
        stream.SetHooks({}, {});
    });
    ExpectParts(seen,
                {"operation under way:\n  name: stopService\n  pid: ", "inside clients: none\n"});
}

/** A client that answers the questions at registration when it likes. */
class LateCallback : public aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBackDefault {
  public:
    Hook inVersion = [] {}, inHash = [] {};

    ndk::SpAIBinder asBinder() override { return mReal->asBinder(); }
    ndk::ScopedAStatus getInterfaceVersion(int32_t* answer) override {
        inVersion();
        return mReal->getInterfaceVersion(answer);
    }
    ndk::ScopedAStatus getInterfaceHash(std::string* answer) override {
        inHash();
        return mReal->getInterfaceHash(answer);
    }

  private:
    const std::shared_ptr<RecordingCallback> mReal = ndk::SharedRefBase::make<RecordingCallback>();
};

TEST_F(DumpWhileBusy, AnswersWhileAClientIsAskedForItsVersionOrHash) {
    const struct {
        Hook LateCallback::*where;
        std::string name;
    } questions[] = {{&LateCallback::inVersion, "getInterfaceVersion"},
                     {&LateCallback::inHash, "getInterfaceHash"}};
    for (const auto& question : questions) {
        const auto callback = ndk::SharedRefBase::make<LateCallback>();
        int64_t handle = 0;
        const std::string seen = LookDuring([&](const Hook& hang) {
            (*callback).*question.where = hang;
            service->registerClient(callback, 3, &handle);
        });
        ExpectParts(seen, {"operation under way:\n  name: registerClient\n",
                           "-  client 0  callback " + question.name + "  for ",
                           "registered clients: none\n"});
        EXPECT_TRUE(service->unregisterClient(handle).isOk());
    }
}

}  // namespace
}  // namespace zarvo::test
