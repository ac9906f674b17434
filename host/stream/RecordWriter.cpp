#include "host/stream/RecordWriter.h"

#include <cstring>
#include <span>
#include <type_traits>

#include "host/stream/OutputRegions.h"
#include "host/stream/RecordLayout.h"
#include "host/stream/picture/Picture.h"

namespace zarvo::host {
namespace {

struct ServiceBlocks {
    int32_t serviceType;
    void (*write)(const View& view, std::span<uint8_t> output);
};

constexpr ServiceBlocks kServiceBlocks[] = {
        {1, WriteFusion}, {2, WriteFaceAngle}, {4, WriteGaze}, {8, WriteFaceFeature}};

void WriteHeader(const RenderConfig& config, uint32_t frame, aov_event& event) {
    event.frame_id = frame;
    event.frame_width = static_cast<uint32_t>(config.width);
    event.frame_height = static_cast<uint32_t>(config.height);
    event.serviceType = static_cast<uint32_t>(config.serviceTypes);
    event.outputSize = layout::kOutputSize;
}

Canvas CanvasOn(const RenderConfig& config, aov_image_info& image) {
    image.height = static_cast<uint32_t>(config.height);
    image.stride = static_cast<uint32_t>(config.width);
    return {image.pixels, image.stride, image.height};
}

void WriteImages(const RenderConfig& config, const Scene& scene, aov_event& event) {
    Canvas canvas = CanvasOn(config, event.imageInfo);
    DrawScene(scene, canvas);
    std::memcpy(event.debugImageInfo.pixels, event.imageInfo.pixels,
                sizeof(aov_image_info::pixels));
    Canvas debugCanvas = CanvasOn(config, event.debugImageInfo);
    DrawDetections(scene, debugCanvas);
}

View ViewOf(const RenderConfig& config, const Scene& scene, const aov_image_info& image) {
    View view{.scene = scene, .faces = {}, .picture = {}};
    for (size_t i = 0; i < scene.shownCount; ++i)
        view.faces[i] = LayOut(scene.faces[i], static_cast<float>(config.height));
    view.picture = {image.pixels, image.stride, image.height};
    return view;
}

}  // namespace

bool FitsRecord(int64_t width, int64_t height) {
    constexpr int64_t kCapacity = aov_image_info::kPixelCapacity;
    if (width < 1 || height < 1 || width > kCapacity || height > kCapacity) return false;
    return width * height * 3 / 2 <= kCapacity;
}

void RenderScene(const RenderConfig& config, uint32_t frame, aov_event& event) {
    static_assert(std::is_trivially_copyable_v<aov_event>);
    std::memset(&event, 0, sizeof(event));
    const double seconds = static_cast<double>(frame) / config.frameRate;
    const float aspect = static_cast<float>(config.width) / static_cast<float>(config.height);
    const Scene scene = SceneAt(config.cast, config.seed, seconds, aspect);
    WriteHeader(config, frame, event);
    WriteImages(config, scene, event);
    const View view = ViewOf(config, scene, event.imageInfo);
    const std::span<uint8_t> output(event.output);
    WriteDetector(view, output);
    for (const ServiceBlocks& blocks : kServiceBlocks)
        if ((config.serviceTypes & blocks.serviceType) != 0) blocks.write(view, output);
}

void ApplyFaults(const RecordFaults& faults, aov_event& event) {
    event.outputSize = faults.outputSize.value_or(event.outputSize);
    if (faults.fusionCount.has_value())
        PutCount(event.output, layout::kFusion.offset, *faults.fusionCount);
    for (aov_image_info* image : {&event.imageInfo, &event.debugImageInfo}) {
        image->height = faults.imageHeight.value_or(image->height);
        image->stride = faults.imageStride.value_or(image->stride);
    }
}

}  // namespace zarvo::host
