#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

TEST(Scene, MovesWithoutJumpsBlinksRestsItsEyesAndLetsNobodyAppearInThePicture) {
    constexpr std::pair<float Face::*, float> kMost[] = {
            {&Face::size, 0.001F},  {&Face::confidence, 0.01F}, {&Face::eyeOpenness, 0.03F},
            {&Face::yaw, 0.3F},     {&Face::pitch, 0.1F},       {&Face::roll, 0.11F},
            {&Face::gazeYaw, 3.0F}, {&Face::gazePitch, 2.0F}};
    for (const Cast cast : {Cast::kStory, Cast::kTwo}) {
        Scene before = SceneAt(cast, 5, 0, kAspect);
        int blinks = 0, rests = 0;
        for (int millisecond = 1; millisecond < 60'000; ++millisecond) {
            const Scene scene = SceneAt(cast, 5, millisecond / 1000.0, kAspect);
            EXPECT_NEAR(scene.rotation, before.rotation, 0.01);
            for (const Face& old : Shown(before))
                EXPECT_TRUE(Find(scene, old.trackId) != nullptr || !IsInPicture(old));
            for (const Face& face : Shown(scene)) {
                const Face* old = Find(before, face.trackId);
                EXPECT_TRUE(old != nullptr || !IsInPicture(face));
                if (old == nullptr) continue;
                EXPECT_EQ(face.person, old->person) << "of one visit";
                blinks += face.eyeOpenness < 0.5F && old->eyeOpenness >= 0.5F ? 1 : 0;
                rests += face.gazeYaw == old->gazeYaw ? 1 : 0;
                EXPECT_NEAR(face.centre.x, old->centre.x, 0.003) << millisecond;
                EXPECT_NEAR(face.centre.y, old->centre.y, 0.001) << millisecond;
                for (const auto& [number, most] : kMost)
                    EXPECT_NEAR(face.*number, old->*number, most) << millisecond << " " << most;
            }
            before = scene;
        }
        EXPECT_GE(blinks, 10);
        EXPECT_GE(rests, 20'000);
    }
}

TEST(Scene, CountsWhoIsWellInThePictureAndKeepsHeadsApart) {
    for (uint64_t seed = 0; seed < 30; ++seed) {
        for (int frame = 0; frame < 600; ++frame) {
            SCOPED_TRACE(std::to_string(seed) + " " + std::to_string(frame));
            const Scene scene = StoryAt(seed, frame / 10.0);
            for (size_t i = 0; i < scene.shownCount; ++i) {
                const Face& face = scene.faces[i];
                const float toSide = std::min(face.centre.x, kAspect - face.centre.x);
                const bool counted = i < scene.faceCount;
                EXPECT_TRUE(counted ? toSide > 0.4F * face.size : toSide < 0.7F * face.size);
            }
            if (scene.shownCount < 2) continue;
            const auto& [one, other] = scene.faces;
            EXPECT_GT(std::abs(one.centre.x - other.centre.x), 0.72F * (one.size + other.size));
            EXPECT_TRUE(scene.faceCount < 2 || one.trackId < other.trackId);
        }
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
