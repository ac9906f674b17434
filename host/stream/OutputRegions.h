#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/stream/picture/FaceLayout.h"
#include "host/stream/scene/Scene.h"

namespace zarvo::host {

/** A luma plane, borrowed. */
struct LumaView {
    std::span<const uint8_t> pixels;
    size_t width = 0;
    size_t height = 0;
};

/** One moment of the scene with its picture: what every block of a record tells. */
struct View {
    Scene scene;
    /** One for each face that is shown. */
    std::array<FaceLayout, Scene::kMaxFaces> faces;
    LumaView picture;

    bool HasFace() const { return scene.faceCount != 0; }
};

/**
 * Each writes the blocks of one service, or of the detector that runs for every frame, at their
 * places in `output`; see RecordLayout.h for what the numbers mean. What is not written for want
 * of a face keeps its bytes.
 */
void WriteDetector(const View& view, std::span<uint8_t> output);
void WriteFusion(const View& view, std::span<uint8_t> output);
void WriteGaze(const View& view, std::span<uint8_t> output);
void WriteFaceAngle(const View& view, std::span<uint8_t> output);
void WriteFaceFeature(const View& view, std::span<uint8_t> output);

/** Puts a number at an offset of a block that is large enough. */
void PutCount(std::span<uint8_t> block, size_t offset, uint32_t count);

}  // namespace zarvo::host
