#include "host/stream/Scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zarvo::host {
namespace {

/** What moves by itself; each has its own random phases. */
enum Channel : uint64_t {
    kCentreX,
    kCentreY,
    kSize,
    kYaw,
    kPitch,
    kRoll,
    kGazeYaw,
    kGazePitch,
    kBlink,
    kRotation,
    kLight,
    kConfidence,
};

uint64_t Mix(uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

/** Sine of a phase counted in turns. */
double Wave(double turns) {
    return std::sin(2 * std::numbers::pi * (turns - std::floor(turns)));
}

/** One seed at one moment. */
struct Moment {
    uint64_t seed;
    double seconds;

    /** A value that wanders between -1 and 1, there and back in about `period` seconds. */
    float Sway(Channel channel, double period) const {
        const double slow = seconds / period + RandomUnit(seed, 2 * channel);
        const double quick = seconds / (0.37 * period) + RandomUnit(seed, 2 * channel + 1);
        return static_cast<float>(0.75 * Wave(slow) + 0.25 * Wave(quick));
    }
    /** 1, but for a blink of 0.3 seconds every few. */
    float EyeOpenness() const {
        constexpr double kPeriod = 3.7;
        constexpr double kHalfBlink = 0.15;
        const double phase = seconds / kPeriod + RandomUnit(seed, 2 * kBlink);
        const double sinceBlink = (phase - std::floor(phase)) * kPeriod;
        return static_cast<float>(std::min(1.0, std::abs(sinceBlink - kHalfBlink) / kHalfBlink));
    }
};

Face MovingFace(const Moment& moment, float aspect) {
    Face face;
    face.trackId = 1;
    face.centre.x = aspect * (0.5F + 0.16F * moment.Sway(kCentreX, 17));
    face.centre.y = 0.5F + 0.06F * moment.Sway(kCentreY, 11);
    face.size = 0.30F + 0.04F * moment.Sway(kSize, 13);
    face.yaw = 28 * moment.Sway(kYaw, 9);
    face.pitch = 14 * moment.Sway(kPitch, 12);
    face.roll = 10 * moment.Sway(kRoll, 15);
    face.gazeYaw = 25 * moment.Sway(kGazeYaw, 6);
    face.gazePitch = 15 * moment.Sway(kGazePitch, 7);
    face.eyeOpenness = moment.EyeOpenness();
    face.confidence = 0.93F + 0.05F * moment.Sway(kConfidence, 5);
    return face;
}

}  // namespace

float RandomUnit(uint64_t seed, uint64_t channel) {
    constexpr uint64_t kUpperBits = 40;
    constexpr float kStep = 1.0F / (1U << (64 - kUpperBits));
    return static_cast<float>(Mix(Mix(seed) ^ channel) >> kUpperBits) * kStep;
}

Scene SceneAt(uint64_t seed, double seconds, float aspect) {
    const Moment moment{seed, seconds};
    Scene scene;
    scene.rotation = 3 * moment.Sway(kRotation, 23);
    scene.light = 1 + 0.06F * moment.Sway(kLight, 19);
    scene.faceCount = 1;
    scene.faces[0] = MovingFace(moment, aspect);
    return scene;
}

}  // namespace zarvo::host
