// Every byte of a stream's record is somebody else's: the whole conversion of arbitrary ones, as
// the properties let it be done.

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include "events/AONManagerCallback.h"
#include "events/OutputLayout.h"
#include "fuzz/Input.h"
#include "platform/Properties.h"

namespace {

using namespace zarvo::aon;
using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;

/** Looks at what every event must have. */
class Receiver : public IOutEventCallback {
  public:
    void OnAONEvent(AONCallBackInfo& info) override {
        constexpr size_t kFrameResults = 3;
        if (info.results.size() < kFrameResults) std::abort();
    }
    void OnAONSensorEvent(AONSensorStateInfo& /*info*/) override { std::abort(); }
};

/** A word of the header, in the order of the input; null behind the last. */
uint32_t* Word(aov_event& event, size_t index) {
    const std::array<uint32_t*, 9> words = {&event.frame_id,
                                            &event.frame_width,
                                            &event.frame_height,
                                            &event.serviceType,
                                            &event.outputSize,
                                            &event.imageInfo.height,
                                            &event.imageInfo.stride,
                                            &event.debugImageInfo.height,
                                            &event.debugImageInfo.stride};
    return index < words.size() ? words[index] : nullptr;
}

/** A bit for each way in which a record is looked at. */
void SetProperties(uint8_t bits) {
    property_set(properties::kVerboseLog, (bits & 1U) != 0 ? "1" : "0");
    property_set(properties::kAovDebugBuffer, (bits & 2U) != 0 ? "2" : "1");
    property_set(properties::kDumpApu, (bits & 4U) != 0 ? "1" : "0");
}

void Fill(aov_event& event, zarvo::fuzz::Input& input) {
    std::memset(static_cast<void*>(&event), 0, sizeof(aov_event));
    for (size_t i = 0; uint32_t* const word = Word(event, i); ++i)
        *word = input.Take<uint32_t>();
    const std::span<const uint8_t> bytes = input.TakeRest();
    for (const auto& block : {layout::kFusion, layout::kGazeResult, layout::kFaceAngleResult,
                              layout::kFaceFeatureResult}) {
        std::copy_n(bytes.begin(), std::min<size_t>(bytes.size(), block.size),
                    event.output + block.offset);
    }
}

}  // namespace

extern "C" {

/** The sanitizer's own version of the call, which watches it. */
[[gnu::weak]] decltype(fopen) __interceptor_fopen;

/** Stands before the system's: a dump is formatted and written, and no file is left. */
FILE* fopen(const char* path, const char* mode) {
    static const auto real =
            __interceptor_fopen != nullptr
                    ? __interceptor_fopen
                    : reinterpret_cast<decltype(fopen)*>(dlsym(RTLD_NEXT, "fopen"));
    return real(std::string_view(path).starts_with("/data/aon/") ? "/dev/null" : path, mode);
}

/** The input is a byte of properties, the header's words, then the bytes with which every result
 * block begins. */
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto translator = AONManagerCallback::create(std::make_shared<Receiver>());
    static const auto event = std::make_unique<aov_event>();
    zarvo::fuzz::Input input(data, size);
    SetProperties(input.Take<uint8_t>());
    Fill(*event, input);
    translator->onCallback(event.get());
    return 0;
}

}  // extern "C"
