// Every byte of a stream's record is somebody else's: the whole conversion of arbitrary ones.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include "events/AONManagerCallback.h"
#include "events/OutputLayout.h"

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

}  // namespace

/** The input is the header's words, then the bytes with which every result block begins. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const auto translator = AONManagerCallback::create(std::make_shared<Receiver>());
    static const auto event = std::make_unique<aov_event>();
    std::memset(static_cast<void*>(event.get()), 0, sizeof(aov_event));
    for (size_t i = 0; size >= sizeof(uint32_t); ++i) {
        uint32_t* const word = Word(*event, i);
        if (word == nullptr) break;
        std::memcpy(word, data, sizeof(uint32_t));
        data += sizeof(uint32_t);
        size -= sizeof(uint32_t);
    }
    for (const auto& block : {layout::kFusion, layout::kGazeResult, layout::kFaceAngleResult,
                              layout::kFaceFeatureResult}) {
        std::memcpy(event->output + block.offset, data, std::min<size_t>(size, block.size));
    }
    translator->onCallback(event.get());
    return 0;
}
