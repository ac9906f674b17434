#include "host/stream/scene/Scene.h"

#include <algorithm>
#include <cstddef>

#include "host/stream/scene/Curves.h"
#include "host/stream/scene/Motion.h"
#include "host/stream/scene/Random.h"
#include "host/stream/scene/Visits.h"

namespace zarvo::host {
namespace {

enum Channel : uint64_t { kRotation, kLight };

/** A slow wave between -1 and 1. */
float Sway(uint64_t seed, Channel channel, double seconds, double period) {
    return Wave(seconds / period + RandomBetween(seed, channel, 0, 1));
}

/** Turns a face around the picture's middle. */
void TurnAround(float degrees, float aspect, Face& face) {
    face.centre = Turned(face.centre, degrees, {0.5F * aspect, 0.5F});
    face.roll += degrees;
}

/** How sure a detector is: of a face that looks to a side less, at the edge not at all. */
float ConfidenceOf(const Face& face, float aspect) {
    const float toSide = std::min(face.centre.x, aspect - face.centre.x);
    const float turned = face.yaw / 90;
    return Ease(toSide / face.size) * (0.98F - 0.5F * turned * turned);
}

}  // namespace

Scene SceneAt(Cast cast, uint64_t seed, double seconds, float aspect) {
    static_assert(Company::kMost <= Scene::kMaxFaces);
    Scene scene;
    // A very wide picture would be turned out of itself.
    const float tilt = 2.5F * std::min(1.0F, 2 / aspect);
    scene.rotation = tilt * Sway(seed, kRotation, seconds, 23);
    scene.light = 1 + 0.05F * Sway(seed, kLight, seconds, 19);
    const Company company = WhoIsThere(cast, seed, seconds);
    for (; scene.shownCount < company.count; ++scene.shownCount) {
        Face& face = scene.faces[scene.shownCount];
        face = FaceOf(company.visits[scene.shownCount], aspect);
        TurnAround(scene.rotation, aspect, face);
        face.confidence = ConfidenceOf(face, aspect);
    }
    const auto begin = scene.faces.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(scene.shownCount);
    const auto others = std::stable_partition(
            begin, end, [](const Face& face) { return face.confidence >= Scene::kCounted; });
    scene.faceCount = static_cast<size_t>(others - begin);
    return scene;
}

}  // namespace zarvo::host
