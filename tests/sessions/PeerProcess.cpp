#include <aidl/tests/BnPeer.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>

#include <cstdio>
#include <memory>

namespace {

using ::aidl::tests::IPeer;
using ::ndk::ScopedAStatus;

/** Calls each visitor back, now and once it has gone; gives its number back as text. */
class Peer : public ::aidl::tests::BnPeer {
  public:
    ScopedAStatus visit(const std::shared_ptr<IPeer>& visitor, int32_t number,
                        std::string* text) override {
        *text = std::to_string(number);
        mLast = visitor;
        return visitor == nullptr ? ScopedAStatus::ok() : visitor->visit(nullptr, number, text);
    }
    ScopedAStatus giveBack(const std::shared_ptr<IPeer>& other,
                           std::shared_ptr<IPeer>* back) override {
        *back = other;
        return ScopedAStatus::ok();
    }
    ScopedAStatus tell(int32_t number) override {
        return mLast == nullptr ? ScopedAStatus::ok() : mLast->tell(number);
    }

  private:
    std::shared_ptr<IPeer> mLast;
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
