#include <gtest/gtest.h>

#include <set>
#include <span>
#include <utility>

#include "host/stream/scene/Scene.h"

namespace zarvo::host {
namespace {

constexpr float kAspect = 4.0F / 3.0F;

Scene StoryAt(uint64_t seed, double seconds, float aspect = kAspect) {
    return SceneAt(Cast::kStory, seed, seconds, aspect);
}

std::span<const Face> Shown(const Scene& scene) {
    return std::span(scene.faces).first(scene.shownCount);
}

const Face* Find(const Scene& scene, int32_t trackId) {
    for (const Face& face : Shown(scene))
        if (face.trackId == trackId) return &face;
    return nullptr;
}

bool IsInPicture(const Face& face) {
    return face.centre.x > -face.size && face.centre.x < kAspect + face.size;
}

TEST(Scene, BeginsWithOneFaceAndHasNobodyOneAndTwoWithinAnyMinute) {
    for (uint64_t seed = 0; seed < 40; ++seed) {
        for (const double begin : {0.0, 13.0, 26.5, 1e5, 8e8}) {
            std::set<size_t> counts;
            for (int frame = 0; frame < 120; ++frame)
                counts.insert(StoryAt(seed, begin + frame / 2.0).faceCount);
            EXPECT_EQ(counts, (std::set<size_t>{0, 1, 2})) << seed << " " << begin;
        }
        for (int frame = 0; frame < 20; ++frame)
            EXPECT_EQ(StoryAt(seed, frame / 10.0).faceCount, 1u) << seed;
    }
}

TEST(Scene, MovesWithoutJumpsAndLetsNobodyAppearInThePicture) {
    constexpr std::pair<float Face::*, float> kMost[] = {
            {&Face::size, 0.001F},  {&Face::confidence, 0.01F}, {&Face::eyeOpenness, 0.03F},
            {&Face::yaw, 0.3F},     {&Face::pitch, 0.1F},       {&Face::roll, 0.11F},
            {&Face::gazeYaw, 3.0F}, {&Face::gazePitch, 2.0F}};
    Scene before = StoryAt(5, 0);
    for (int millisecond = 1; millisecond < 60'000; ++millisecond) {
        const Scene scene = StoryAt(5, millisecond / 1000.0);
        for (const Face& face : Shown(scene)) {
            const Face* old = Find(before, face.trackId);
            EXPECT_TRUE(old != nullptr || !IsInPicture(face)) << millisecond;
            if (old == nullptr) continue;
            EXPECT_NEAR(face.centre.x, old->centre.x, 0.003) << millisecond;
            EXPECT_NEAR(face.centre.y, old->centre.y, 0.001) << millisecond;
            for (const auto& [number, most] : kMost)
                EXPECT_NEAR(face.*number, old->*number, most) << millisecond << " " << most;
        }
        before = scene;
    }
}

TEST(Scene, FitsPicturesOfAnyShape) {
    for (const float aspect : {2e-6F, 0.5F, 1.0F, 3.0F, 5e5F})
        for (int frame = 0; frame < 120; ++frame) {
            const Scene scene = StoryAt(1, frame / 2.0, aspect);
            for (size_t i = 0; i < scene.faceCount; ++i) {
                const Face& face = scene.faces[i];
                EXPECT_TRUE(0 < face.centre.x && face.centre.x < aspect) << aspect;
                EXPECT_TRUE(face.size < face.centre.y && face.centre.y < 1 - face.size) << aspect;
            }
        }
}

}  // namespace
}  // namespace zarvo::host
