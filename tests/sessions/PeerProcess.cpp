#include <aidl/tests/BnPeer.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>

#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace {

using ::aidl::tests::IPeer;
using ::ndk::ScopedAStatus;

/** Calls each visitor back, now and once it has gone; gives its number back as text. */
class Peer : public ::aidl::tests::BnPeer {
  public:
    ScopedAStatus visit(const std::shared_ptr<IPeer>& visitor, int32_t number,
                        std::string* text) override {
        *text = std::to_string(number);
        Keep(visitor);
        return visitor == nullptr ? ScopedAStatus::ok() : visitor->visit(nullptr, number, text);
    }
    ScopedAStatus giveBack(const std::shared_ptr<IPeer>& other,
                           std::shared_ptr<IPeer>* back) override {
        *back = other;
        return ScopedAStatus::ok();
    }
    ScopedAStatus tell(int32_t number) override {
        const std::shared_ptr<IPeer> last = Keep(nullptr);
        return last == nullptr ? ScopedAStatus::ok() : last->tell(number);
    }

  private:
    /** Puts the visitor in the place of the last one. */
    std::shared_ptr<IPeer> Keep(std::shared_ptr<IPeer> visitor) {
        const std::lock_guard lock(mMutex);
        return std::exchange(mLast, std::move(visitor));
    }

    std::mutex mMutex;
    std::shared_ptr<IPeer> mLast;  // mMutex
};

}  // namespace

/** Serves a peer by the name given; prints what came of publishing it. */
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const auto peer = ndk::SharedRefBase::make<Peer>();
    const int result = AServiceManager_addService(peer->asBinder().get(), argv[1]);
    std::printf("%d\n", result);
    std::fflush(stdout);
    if (result != EX_NONE) return 1;
    ABinderProcess_joinThreadPool();
}
