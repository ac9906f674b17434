#include "host/stream/scene/Motion.h"

#include <algorithm>
#include <cmath>

#include "host/stream/scene/Curves.h"
#include "host/stream/scene/People.h"
#include "host/stream/scene/Random.h"

namespace zarvo::host {
namespace {

constexpr double kWalkSeconds = 2.2;
/** How far a walking head is turned to where it goes. */
constexpr float kWalkYaw = 36;
/** How far eyes turn in the head. */
constexpr float kMostEyeYaw = 26;
constexpr float kMostEyePitch = 15;
/** Half a head's height of the middle size, and how wide a picture it is meant for. */
constexpr float kHeadSize = 0.255F;
constexpr float kUsualAspect = 4.0F / 3.0F;

/** What chance decides about a visit; each has its own numbers. */
enum Channel : uint64_t {
    kStand,
    kPosture,
    kSwayX,
    kSwayY,
    kSwayRoll,
    kTurn,
    kYaw,
    kPitch,
    kRoll,
    kGlance,
    kAtSensor,
    kGazeYaw,
    kGazePitch,
    kLean,
    kBlink,
    kSecondBlink,
};

/** Something that rests and moves in turns: on the way from its stop `index` to the next. */
struct Step {
    uint64_t index = 0;
    float share = 0;
};

float Clamped(float value, float middle, float most) {
    return std::clamp(value, middle - most, middle + most);
}

/** How far a blink that began some seconds ago has shut the eyes, 0 to 1. */
float Shut(double sinceBlink) {
    return sinceBlink < 0.08 ? Ease(sinceBlink / 0.08) : 1 - Ease((sinceBlink - 0.08) / 0.17);
}

class Mover {
  public:
    Mover(const Visit& visit, float aspect)
        : mVisit(visit),
          mAspect(aspect),
          mUnit(std::min(1.0F, aspect / kUsualAspect)),
          mPerson(PersonNumber(visit.person)) {}

    Face Moved() const {
        Face face;
        face.trackId = mVisit.trackId;
        face.person = mVisit.person;
        Stand(face);
        Turn(face);
        Look(face);
        face.eyeOpenness = EyeOpenness();
        return face;
    }

  private:
    /** About every `rest` seconds, at no fixed time, it moves on within `move` seconds. */
    Step StepOf(Channel channel, double rest, double move) const {
        const double slots = mVisit.sinceEntry / rest;
        const auto index = static_cast<uint64_t>(std::max(0.0, std::floor(slots)));
        const double begin = RandomBetween(Seed(channel), index, 0, rest - move);
        const double since = mVisit.sinceEntry - static_cast<double>(index) * rest - begin;
        return {index, Ease(since / move)};
    }
    uint64_t Seed(Channel channel) const { return SeedOf(mVisit.seed, channel); }
    /** Where a step is between random stops from -1 to 1. */
    float Along(const Step& step, Channel channel) const {
        return Between(Stop(channel, step.index), Stop(channel, step.index + 1), step.share);
    }
    float Stop(Channel channel, uint64_t index) const {
        return static_cast<float>(RandomBetween(Seed(channel), index, -1, 1));
    }
    /** A slow wave between -1 and 1. */
    float Sway(Channel channel, double period) const {
        return Wave(mVisit.sinceEntry / period + RandomBetween(Seed(channel), 0, 0, 1));
    }

    void Stand(Face& face) const {
        const float lean = Along(StepOf(kPosture, 4.5, 1.5), kLean);
        face.size = kHeadSize * mUnit * mPerson.size * (1 + 0.12F * lean - 0.09F * mVisit.aside);
        const auto place = static_cast<float>(mVisit.place);
        const float middle = 0.10F * Along(StepOf(kStand, 6, 2), kStand);
        const float stand = Between(middle, 0.28F * place, mVisit.aside) + 0.012F * Sway(kSwayX, 5);
        face.centre.x = OnTheWay(0.5F * mAspect + mUnit * stand, 2.2F * face.size);
        const float steps = std::max(Entering(), Leaving()) *
                            static_cast<float>(std::sin(11 * std::min(mVisit.sinceEntry, 1e3)));
        face.centre.y = 0.5F + mUnit * (0.96F - mPerson.size + 0.03F * lean +
                                        0.008F * Sway(kSwayY, 3.5) + 0.008F * steps);
    }
    /** From out of the picture to `stand` and out of it again. */
    float OnTheWay(float stand, float outside) const {
        const auto beyond = [&](Side side) {
            return side == Side::kLeft ? -outside : mAspect + outside;
        };
        const float in = Ease(mVisit.sinceEntry / kWalkSeconds);
        const float out = Ease(mVisit.untilExit / kWalkSeconds);
        return Between(beyond(mVisit.goesTo), Between(beyond(mVisit.cameFrom), stand, in), out);
    }
    /** How far the body still, or already, is turned to where it walks, 0 to 1. */
    float Entering() const { return 1 - Ease((mVisit.sinceEntry - 1.1) / 1.2); }
    float Leaving() const { return 1 - Ease((mVisit.untilExit - 1.6) / 1.2); }

    void Turn(Face& face) const {
        const Step turn = StepOf(kTurn, 2.6, 0.8);
        const float wander = Along(turn, kYaw);
        // Mostly towards the sensor, at times far to a side.
        face.yaw = 38 * wander * std::abs(wander);
        face.pitch = 2 + 11 * Along(turn, kPitch);
        face.roll = 7 * Along(turn, kRoll) + 1.5F * Sway(kSwayRoll, 4);
        face.yaw = Between(face.yaw, -kWalkYaw * static_cast<float>(mVisit.cameFrom), Entering());
        face.yaw = Between(face.yaw, kWalkYaw * static_cast<float>(mVisit.goesTo), Leaving());
    }

    void Look(Face& face) const {
        const Step glance = StepOf(kGlance, 0.9, 0.06);
        const float from = Away(glance.index);
        const float to = Away(glance.index + 1);
        const auto along = [&](Channel channel) {
            return Between(from * Stop(channel, glance.index), to * Stop(channel, glance.index + 1),
                           glance.share);
        };
        // Eyes hold what they look at while the head turns, as far as they reach.
        face.gazeYaw = Clamped(45 * along(kGazeYaw), face.yaw, kMostEyeYaw);
        face.gazePitch = Clamped(22 * along(kGazePitch), face.pitch, kMostEyePitch);
    }
    /** 0 for a glance at the sensor, as nearly half of them are, else 1. */
    float Away(uint64_t index) const {
        return RandomUnit(Seed(kAtSensor), index) < 0.45F ? 0.0F : 1.0F;
    }

    float EyeOpenness() const {
        constexpr double kSlot = 3.2;
        const double slot = std::max(0.0, std::floor(mVisit.sinceEntry / kSlot));
        const auto index = static_cast<uint64_t>(slot);
        const double begin = RandomBetween(Seed(kBlink), index, 0.2, 2.3);
        const double since = mVisit.sinceEntry - slot * kSlot - begin;
        const bool twice = RandomUnit(Seed(kSecondBlink), index) < 0.3F;
        return 1 - std::max(Shut(since), twice ? Shut(since - 0.36) : 0.0F);
    }

    const Visit& mVisit;
    const float mAspect;
    /** Scales lengths down where the picture is narrow. */
    const float mUnit;
    const Person& mPerson;
};

}  // namespace

Face FaceOf(const Visit& visit, float aspect) {
    return Mover(visit, aspect).Moved();
}

}  // namespace zarvo::host
