#include <android/binder_manager.h>
#include <android/binder_process.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <future>
#include <thread>

#include "host/binder/services/FoundServices.h"
#include "host/binder/services/PublishedServices.h"
#include "tests/clients/RecordingCallback.h"
#include "tests/sessions/ServerTest.h"
#include "tests/support/Child.h"
#include "tests/support/RuntimeDirectory.h"

namespace tests {
namespace {

using ::zarvo::host::FoundServices;
using ::zarvo::test::Child;
using ::zarvo::test::RuntimeDirectory;
using namespace std::chrono_literals;

constexpr char kName[] = "tests.IPeer/default";
constexpr char kPublished[] = "0";

/** Another process that serves kName, or tries to. */
class PeerProcess : public Child {
  public:
    PeerProcess() : Child({PEER_PROCESS, kName}) {}

    void Kill() {
        Signal(SIGKILL);
        Wait();
    }

    /** What came of publishing it, as text. */
    const std::string result = Line();
};

class ServiceNames : public testing::Test {
  protected:
    ~ServiceNames() override { zarvo::host::PublishedServices::Instance().WithdrawAll(); }

    std::string SocketFile() const { return mDirectory + "/tests.IPeer_default"; }
    static std::shared_ptr<IPeer> Find() {
        return IPeer::fromBinder(SpAIBinder(AServiceManager_checkService(kName)));
    }

    const RuntimeDirectory mRuntime;
    const std::string& mDirectory = mRuntime.path;
    const std::shared_ptr<Peer> mPeer = SharedRefBase::make<Peer>();
};

TEST_F(ServiceNames, LeadStraightToTheObjectInItsOwnProcess) {
    EXPECT_EQ(AServiceManager_checkService(kName), nullptr);
    ASSERT_EQ(AServiceManager_addService(mPeer->asBinder().get(), kName), EX_NONE);
    EXPECT_EQ(Find(), mPeer);
    EXPECT_TRUE(std::filesystem::is_socket(SocketFile()));
    // Published again, by the same process: replaced.
    const auto next = SharedRefBase::make<Peer>();
    ASSERT_EQ(AServiceManager_addService(next->asBinder().get(), kName), EX_NONE);
    EXPECT_EQ(Find(), next);
    // Without descriptors it can not be, and nothing changes.
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{.rlim_cur = 0, .rlim_max = limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(AServiceManager_addService(mPeer->asBinder().get(), kName), EX_ILLEGAL_STATE);
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(Find(), next);
    EXPECT_TRUE(Socket::Connect(SocketFile()).IsOpen());
}

TEST_F(ServiceNames, AreRefusedWhereTheyCannotBe) {
    const SpAIBinder object = mPeer->asBinder();
    AIBinder* const peer = object.get();
    EXPECT_EQ(AServiceManager_addService(nullptr, kName), EX_ILLEGAL_ARGUMENT);
    for (const std::string& name :
         {std::string(), std::string("a b"), std::string("../a"), std::string(128, 'a')}) {
        EXPECT_EQ(AServiceManager_addService(peer, name.c_str()), EX_ILLEGAL_ARGUMENT) << name;
        EXPECT_EQ(AServiceManager_checkService(name.c_str()), nullptr) << name;
    }
    EXPECT_EQ(AServiceManager_addService(peer, std::string(120, 'a').c_str()), EX_ILLEGAL_STATE);
    EXPECT_EQ(AServiceManager_waitForService(nullptr), nullptr);
    EXPECT_TRUE(AServiceManager_isDeclared("vendor.zarvo.hardware.camera.aon.IAONService/default"));
    for (const char* name : {"vendor.zarvo.hardware.camera.aon.IAONService", kName,
                             "camera.aon.IAONService/default", "default"}) {
        EXPECT_FALSE(AServiceManager_isDeclared(name)) << name;
    }

    // What promises stability to the system has a declared name.
    const SpAIBinder stable = SharedRefBase::make<zarvo::test::RecordingCallback>()->asBinder();
    EXPECT_EQ(AServiceManager_addService(stable.get(), kName), EX_ILLEGAL_ARGUMENT);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(mDirectory.c_str(), 1, 1), 0);
        EXPECT_EQ(AServiceManager_addService(peer, kName), EX_SECURITY);
    }
}

TEST_F(ServiceNames, AreKeptWhereNobodyElseCanLook) {
    const std::string directory = mDirectory + "/new";
    setenv("AON_RUNTIME_DIR", directory.c_str(), 1);
    const mode_t before = umask(0);
    ASSERT_EQ(AServiceManager_addService(mPeer->asBinder().get(), kName), EX_NONE);
    umask(before);
    EXPECT_EQ(std::filesystem::status(directory).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(ServiceNames, ReachWhoComesAlsoDuringACrowd) {
    const PeerProcess process;
    const Child crowd({PEER_PROCESS, SocketFile(), "crowd"});
    EXPECT_EQ(crowd.Line(), "refused");
    std::string text;
    const auto other = Find();
    EXPECT_TRUE(other != nullptr && other->visit(nullptr, 5, &text).isOk());
}

TEST_F(ServiceNames, AreTakenFromTheDeadAndNotFromTheLiving) {
    PeerProcess first;
    ASSERT_EQ(first.result, kPublished);
    EXPECT_EQ(PeerProcess().result, std::to_string(EX_ILLEGAL_STATE));
    first.Kill();
    EXPECT_TRUE(std::filesystem::is_socket(SocketFile()));
    EXPECT_EQ(Find(), nullptr);
    EXPECT_EQ(PeerProcess().result, kPublished);
}

TEST_F(ServiceNames, OfAProcessThatDoesNotAnswerAreGivenUpInTime) {
    const auto soon = [] { return std::chrono::steady_clock::now() + 50ms; };
    const PeerProcess process;
    kill(process.Pid(), SIGSTOP);
    const auto find = [&] {
        errno = 0;
        return SpAIBinder(FoundServices::Instance().Find(kName, SocketFile(), soon()).Release());
    };
    EXPECT_EQ(find().get(), nullptr);
    EXPECT_EQ(errno, ETIMEDOUT);
    // Nor when so many wait that no more can.
    std::vector<Socket> waiting;
    do {
        waiting.push_back(Socket::Connect(SocketFile(), soon()));
    } while (waiting.back().IsOpen());
    EXPECT_EQ(find().get(), nullptr);
    EXPECT_EQ(errno, ETIMEDOUT);
    waiting.clear();
    kill(process.Pid(), SIGCONT);
    EXPECT_NE(Find(), nullptr);
}

TEST_F(ServiceNames, ReachAProcessThatCallsBackAndDies) {
    PeerProcess process;
    const std::shared_ptr<IPeer> other = Find();
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(Find()->asBinder(), other->asBinder());
    std::promise<int> told;
    mPeer->onVisit = [&](const auto&, int32_t, std::string* text) {
        *text = std::to_string(AIBinder_getCallingPid());
        EXPECT_EQ(AIBinder_getCallingUid(), getuid());
        EXPECT_TRUE(AIBinder_isHandlingTransaction());
        return ScopedAStatus::ok();
    };
    mPeer->onTell = [&](int32_t number) { told.set_value(number); };
    // Within a call the caller's own thread is called back; otherwise one of the pool is needed.
    std::string text;
    EXPECT_TRUE(other->visit(mPeer, 5, &text).isOk());
    EXPECT_EQ(text, std::to_string(process.Pid()));
    EXPECT_FALSE(AIBinder_isHandlingTransaction());
    std::promise<void> died;
    const ndk::ScopedAIBinder_DeathRecipient recipient(AIBinder_DeathRecipient_new(
            [](void* cookie) { static_cast<std::promise<void>*>(cookie)->set_value(); }));
    AIBinder* const binder = other->asBinder().get();
    EXPECT_EQ(AIBinder_linkToDeath(binder, recipient.get(), &died), STATUS_INVALID_OPERATION);
    ABinderProcess_startThreadPool();
    EXPECT_FALSE(ABinderProcess_setThreadPoolMaxThreadCount(1));
    EXPECT_TRUE(other->tell(7).isOk());
    EXPECT_EQ(told.get_future().get(), 7);
    EXPECT_EQ(AIBinder_linkToDeath(binder, recipient.get(), &died), STATUS_OK);
    // Even if it dies inside its call.
    mPeer->onVisit = [&](const auto&, int32_t, std::string*) {
        process.Kill();
        return ScopedAStatus::ok();
    };
    EXPECT_EQ(other->visit(mPeer, 5, &text).getStatus(), STATUS_DEAD_OBJECT);
    died.get_future().wait();
    EXPECT_EQ(AIBinder_ping(binder), STATUS_DEAD_OBJECT);
}

TEST_F(ServiceNames, OfAProcessThatDoesNotAnswerAndDiesHoldNobodyUp) {
    auto process = std::make_unique<PeerProcess>();
    const std::shared_ptr<IPeer> other = Find();
    ASSERT_NE(other, nullptr);
    process->Stop();
    std::vector<std::future<binder_status_t>> calls;
    for (int i = 0; i < 3; ++i) {
        calls.push_back(std::async(std::launch::async,
                                   [&other] { return AIBinder_ping(other->asBinder().get()); }));
    }
    EXPECT_EQ(calls[0].wait_for(50ms), std::future_status::timeout);
    process->Kill();
    for (auto& call : calls)
        EXPECT_EQ(call.get(), STATUS_DEAD_OBJECT);
    // Who waits for the name gets the next process.
    process = std::make_unique<PeerProcess>();
    process->Stop();
    auto found = std::async(std::launch::async,
                            [] { return SpAIBinder(AServiceManager_waitForService(kName)); });
    EXPECT_EQ(found.wait_for(50ms), std::future_status::timeout);
    process->Kill();
    process = std::make_unique<PeerProcess>();
    EXPECT_EQ(AIBinder_ping(found.get().get()), STATUS_OK);
}

TEST_F(ServiceNames, AreAwaitedByManyAtOnceAndEndedByAny) {
    ABinderProcess_startThreadPool();
    const ndk::ScopedAIBinder_DeathRecipient recipient(AIBinder_DeathRecipient_new([](void*) {}));
    std::vector<std::thread> waiting;
    for (int32_t i = 0; i < 8; ++i) {
        waiting.emplace_back([&recipient, i] {
            // The last one who lets go ends the session that the others are about to find.
            for (int round = 0; round < 20; ++round) {
                const SpAIBinder found(AServiceManager_waitForService(kName));
                EXPECT_EQ(AIBinder_linkToDeath(found.get(), recipient.get(), nullptr), STATUS_OK);
                std::string text;
                EXPECT_TRUE(IPeer::fromBinder(found)->visit(nullptr, i, &text).isOk());
                EXPECT_EQ(text, std::to_string(i));
            }
        });
    }
    const PeerProcess process;
    for (auto& thread : waiting)
        thread.join();
}

TEST_F(ServiceNames, AreTakenBackBeforeAnybodyLosesAService) {
    ABinderProcess_startThreadPool();
    for (const char* const name : {kName, "tests.IPeer/another", "tests.IPeer/last"})
        ASSERT_EQ(AServiceManager_addService(mPeer->asBinder().get(), name), EX_NONE);
    // The service is told when its client's session ends.
    int told = 0;
    std::function<void()> onDeath = [&] { told = std::filesystem::is_empty(mDirectory) ? 1 : -1; };
    const ndk::ScopedAIBinder_DeathRecipient recipient(AIBinder_DeathRecipient_new(
            [](void* cookie) { (*static_cast<std::function<void()>*>(cookie))(); }));
    std::shared_ptr<IPeer> known;
    mPeer->onVisit = [&](const auto& visitor, int32_t, std::string*) {
        known = visitor;
        return ScopedAStatus::fromStatus(
                AIBinder_linkToDeath(known->asBinder().get(), recipient.get(), &onDeath));
    };
    const auto session = ConnectRpc({.dial = [&](auto) { return Socket::Connect(SocketFile()); }});
    const auto root = RootOf(*session);
    std::string text;
    ASSERT_TRUE(root->visit(SharedRefBase::make<Peer>(), 5, &text).isOk());
    zarvo::host::PublishedServices::Instance().WithdrawAll();
    EXPECT_EQ(told, 1);
}

TEST_F(ServiceNames, AreTakenBackAlsoWhenNoDescriptorIsLeft) {
    ABinderProcess_startThreadPool();
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit low{.rlim_cur = 64, .rlim_max = limit.rlim_max};
    // First with descriptors, for a sanitizer that needs some when it meets a class.
    for (const bool isFull : {false, true}) {
        ASSERT_EQ(AServiceManager_addService(mPeer->asBinder().get(), kName), EX_NONE);
        // Once it has accepted, it is about to accept the next.
        const auto accepted =
                ConnectRpc({.dial = [&](auto) { return Socket::Connect(SocketFile()); }});
        ASSERT_NE(accepted, nullptr);
        if (isFull) setrlimit(RLIMIT_NOFILE, &low);
        std::vector<ndk::ScopedFileDescriptor> all;
        while (isFull && (all.empty() || all.back().get() >= 0))
            all.emplace_back(dup(STDERR_FILENO));
        if (isFull) all.resize(all.size() - 2);
        const Socket waiting = Socket::Connect(SocketFile());
        EXPECT_TRUE(waiting.IsOpen());
        zarvo::host::PublishedServices::Instance().WithdrawAll();
    }
    setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace
}  // namespace tests
