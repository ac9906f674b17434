#include <aidl/zarvo/aon/host/IHostControl.h>
#include <android/binder_manager.h>

#include <memory>

#include "host/demo/remote/Dialogue.h"
#include "host/demo/remote/Remote.h"
#include "platform/Properties.h"

namespace zarvo::host::demo {
namespace {

using aidl::zarvo::aon::host::Cast;
using aidl::zarvo::aon::host::IHostControl;

ndk::ScopedAStatus ReportStreaming(IHostControl& controls) {
    bool streaming = false;
    ndk::ScopedAStatus status = controls.isStreaming(&streaming);
    if (status.isOk()) Report("streaming", streaming ? "1" : "0");
    return status;
}

}  // namespace

int RunControls() {
    const auto controls = IHostControl::fromBinder(
            ndk::SpAIBinder(AServiceManager_waitForService(IHostControl::INSTANCE)));
    if (controls == nullptr) return EXIT_FAILURE;
    return ServeCommands({
            {"seed", 1, [&](Numbers numbers) { return controls->setSeed(numbers[0]); }},
            {"cast", 1,
             [&](Numbers numbers) { return controls->setCast(static_cast<Cast>(numbers[0])); }},
            {"verbose", 0,
             [&](Numbers) { return controls->setProperty(aon::properties::kVerboseLog, "true"); }},
            {"open-camera", 1,
             [&](Numbers numbers) {
                 return controls->openCamera(static_cast<int32_t>(numbers[0]));
             }},
            {"close-camera", 1,
             [&](Numbers numbers) {
                 return controls->closeCamera(static_cast<int32_t>(numbers[0]));
             }},
            {"streaming", 0, [&](Numbers) { return ReportStreaming(*controls); }},
    });
}

}  // namespace zarvo::host::demo
