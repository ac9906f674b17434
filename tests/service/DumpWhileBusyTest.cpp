#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>

#include "tests/service/DumpFixture.h"

namespace zarvo::test {
namespace {

using Hook = std::function<void()>;
using Clock = std::chrono::steady_clock;

/** What a look may take while something hangs; a sanitizer makes everything slower. */
#ifdef AON_SANITIZED
constexpr std::chrono::seconds kSoon{10};
#else
constexpr std::chrono::seconds kSoon{1};
#endif

/** Something hangs, somewhere inside, until it is released. */
class DumpWhileBusy : public DumpFixture {
  protected:
    /** Where the first one who comes hangs. */
    void Hang() {
        if (mHung.exchange(true)) return;
        mInside.set_value();
        mRelease.get_future().wait();
    }
    /** Runs what comes to Hang(), and gives what is seen meanwhile. */
    std::string LookDuring(const Hook& busy) {
        auto working = std::async(std::launch::async, busy);
        mInside.get_future().wait();
        auto looking = std::async(std::launch::async, [&] { return LookSoon(); });
        EXPECT_EQ(looking.wait_for(kPatience), std::future_status::ready);
        mRelease.set_value();
        working.get();
        EXPECT_EQ(Look().find("operation under way"), std::string::npos);
        return looking.get();
    }

  private:
    /** The quickest of a few, since the machine may have other things to do. */
    std::string LookSoon() {
        std::string seen;
        Clock::duration quickest = Clock::duration::max();
        for (int look = 0; look < 3; ++look) {
            const Clock::time_point begin = Clock::now();
            seen = Look();
            quickest = std::min(quickest, Clock::now() - begin);
        }
        EXPECT_LE(quickest, kSoon);
        return seen;
    }

    std::atomic<bool> mHung{false};
    std::promise<void> mInside, mRelease;
};

TEST_F(DumpWhileBusy, AnswersWhileTheStreamHangs) {
    RemoteClient client(service);
    Run(client, 3, 3);
    stream.SetHooks({}, [&] { Hang(); });
    ExpectParts(LookDuring([&] { client.Stop(3); }),
                {"operation under way:\n  name: stopService\n  pid: ", "inside clients: none\n"});
    stream.SetHooks({}, {});
}

/** A client that answers one of the questions at registration late. */
class LateCallback : public aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBackDefault {
  public:
    LateCallback(Hook inVersion, Hook inHash)
        : mInVersion(std::move(inVersion)), mInHash(std::move(inHash)) {}

    ndk::SpAIBinder asBinder() override { return mReal->asBinder(); }
    ndk::ScopedAStatus getInterfaceVersion(int32_t* answer) override {
        if (mInVersion) mInVersion();
        return mReal->getInterfaceVersion(answer);
    }
    ndk::ScopedAStatus getInterfaceHash(std::string* answer) override {
        if (mInHash) mInHash();
        return mReal->getInterfaceHash(answer);
    }

  private:
    const std::shared_ptr<RecordingCallback> mReal = ndk::SharedRefBase::make<RecordingCallback>();
    const Hook mInVersion, mInHash;
};

class DumpWhileAsking : public DumpWhileBusy {
  protected:
    void ExpectSeen(const std::shared_ptr<LateCallback>& callback, const std::string& question) {
        int64_t handle = 0;
        ExpectParts(LookDuring([&] { service->registerClient(callback, 3, &handle); }),
                    {"operation under way:\n  name: registerClient\n",
                     "-  client 0  callback " + question + "  for ", "registered clients: none\n"});
        EXPECT_EQ(handle, 1);
    }
};

TEST_F(DumpWhileAsking, AnswersWhileAClientIsAskedForItsVersion) {
    ExpectSeen(ndk::SharedRefBase::make<LateCallback>([&] { Hang(); }, Hook()),
               "getInterfaceVersion");
}

TEST_F(DumpWhileAsking, AnswersWhileAClientIsAskedForItsHash) {
    ExpectSeen(ndk::SharedRefBase::make<LateCallback>(Hook(), [&] { Hang(); }), "getInterfaceHash");
}

}  // namespace
}  // namespace zarvo::test
