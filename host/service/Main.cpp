#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <android/binder_manager.h>
#include <android/binder_process.h>

#include <cstdlib>
#include <string>

#include "host/service/HostControls.h"
#include "platform/Log.h"
#include "service/AONService.h"

namespace {

/** Besides the first: a client that waits must not keep another one's call away. */
constexpr uint32_t kMoreThreads = 7;

}  // namespace

/** Publishes the one service and serves until the process is told to end. */
int main(int argc, char** argv) {
    const std::optional<int> exitStatus = zarvo::host::BeginHostControls(argc, argv);
    if (exitStatus) return *exitStatus;
    ABinderProcess_setThreadPoolMaxThreadCount(kMoreThreads);
    const ndk::SpAIBinder service = ndk::SharedRefBase::make<zarvo::aon::AONService>()->asBinder();
    const std::string instance = std::string(zarvo::aon::AONService::descriptor) + "/default";
    const auto result = AServiceManager_addService(service.get(), instance.c_str());
    if (result != EX_NONE) {
        AON_LOGE("AONService", "cannot publish %s: exception %d%s", instance.c_str(), result,
                 result == EX_ILLEGAL_STATE ? ", another process may serve it" : "");
        return EXIT_FAILURE;
    }
    if (!zarvo::host::PublishHostControls(service.get())) return EXIT_FAILURE;
    ABinderProcess_joinThreadPool();
    zarvo::host::EndHostControls();
    return EXIT_SUCCESS;
}
