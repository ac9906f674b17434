#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zarvo::host {

/** A place or a length in the picture, counted in picture heights: y from 0 at the top to 1, x
 * from 0 at the left to the picture's aspect ratio. */
struct Point {
    float x = 0;
    float y = 0;
};

/** A face in front of the sensor. Angles are in degrees and zero when it faces the sensor. */
struct Face {
    int32_t trackId = 0;
    /** Middle of the head. */
    Point centre;
    /** Half of the head's height. */
    float size = 0;
    /** Head: yaw to the right of the picture, pitch downwards, roll clockwise. */
    float yaw = 0, pitch = 0, roll = 0;
    /** Eyes, counted as the head's angles are. */
    float gazeYaw = 0, gazePitch = 0;
    /** From 0, eyes shut, to 1. */
    float eyeOpenness = 1;
    /** How sure a detector is, 0 to 1. */
    float confidence = 1;
};

/** What the sensor sees at one moment. */
struct Scene {
    static constexpr size_t kMaxFaces = 2;

    /** How far the sensor itself is turned, degrees clockwise. */
    float rotation = 0;
    /** Brightness of the room, about 1. */
    float light = 1;
    size_t faceCount = 0;
    std::array<Face, kMaxFaces> faces;
};

/** A number in [0, 1) that looks random and depends on the two arguments alone. */
float RandomUnit(uint64_t seed, uint64_t channel);

/** The scene of a seed at a moment, in a picture of the given aspect ratio. A pure function, and
 * a continuous one of time. */
Scene SceneAt(uint64_t seed, double seconds, float aspect);

}  // namespace zarvo::host
