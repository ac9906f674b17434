#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/stream/scene/Cast.h"
#include "host/stream/scene/Point.h"

namespace zarvo::host {

/**
 * A face in front of the sensor. Places and lengths are counted in picture heights: y from 0 at the
 * top to 1, x from 0 at the left to the picture's aspect ratio. Angles are in degrees and zero when
 * it faces the sensor.
 */
struct Face {
    /** New with every visit. */
    int32_t trackId = 0;
    /** Who it is, below kPeople; comes again. */
    size_t person = 0;
    /** Middle of the head. */
    Point centre;
    /** Half of the head's height. */
    float size = 0;
    /** Head: yaw to the right of the picture, pitch downwards, roll clockwise. */
    float yaw = 0, pitch = 0, roll = 0;
    /** Eyes, counted as the head's angles are: both zero when they look at the sensor, however
     * the head is held. */
    float gazeYaw = 0, gazePitch = 0;
    /** From 0, eyes shut, to 1. */
    float eyeOpenness = 1;
    /** How sure a detector is, 0 to 1: smoothly less for a face that is turned away or only
     * partly in the picture. */
    float confidence = 1;
};

/** What the sensor sees at one moment. */
struct Scene {
    static constexpr size_t kMaxFaces = 2;
    /** How sure a detector must be to count a face. */
    static constexpr float kCounted = 0.5F;

    /** How far the scene is turned around the picture's middle, degrees clockwise, since nobody
     * holds a sensor level; places and rolls of the faces include it. */
    float rotation = 0;
    /** Brightness of the room, about 1. */
    float light = 1;
    /** The faces that a detector counts; these come first. */
    size_t faceCount = 0;
    /** These and those that are at the picture's edge. */
    size_t shownCount = 0;
    /** Within counted and not counted ones, who came first comes first. */
    std::array<Face, kMaxFaces> faces;
};

/** The scene of a seed `seconds` (at least 0) after its beginning, in a picture of the given
 * aspect ratio. A pure function, and of time a continuous one, but for faceCount. */
[[gnu::visibility("default")]] Scene SceneAt(Cast cast, uint64_t seed, double seconds,
                                             float aspect);

}  // namespace zarvo::host
