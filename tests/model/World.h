#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "service/SensorArbitration.h"

namespace zarvo::test {

using Config = aon::SensorConfigInfo;

/**
 * The programs that use the service. All use the one handle there is, also one that was not given
 * it, or from which it went over to another: the service cannot tell. Mallory never registers, and
 * uses a handle that nobody is given.
 */
enum class User { kAlice, kBob, kCarol, kMallory, kNobody };
inline constexpr User kUsers[] = {User::kAlice, User::kBob, User::kCarol};
inline constexpr int64_t kHandle = 1;
inline constexpr int64_t kMallorysHandle = 7;

/** "alice" */
inline std::string NameOf(User user) {
    constexpr const char* kNames[] = {"alice", "bob", "carol", "mallory", ""};
    return kNames[static_cast<size_t>(user)];
}

/**
 * What can happen around the service. Every act makes sense at any time.
 *
 * A program that ends is started anew at once, with a callback that the service does not know.
 */
enum class Act {
    kRegister,
    kRegisterNothing,
    kSubscribe,
    kStart,
    kStop,
    kUnsubscribe,
    kUnregister,
    /** The program ends, and the service is told. */
    kDie,
    /** The program ends, but the notice of it stays on its way until kTellDeath. */
    kDieUnnoticed,
    /** The oldest notice on its way arrives; nothing if there is none. */
    kTellDeath,
    /** The service ends, and the next one takes its place. */
    kRestartService,
    kOpenCamera,
    /** The platform cannot say which sensors the camera has. */
    kOpenUnlistedCamera,
    kCloseCamera,
    kRefuseNextStart,
    kRefuseNextStop,
    kRefuseNextCameraNotice,
    /** The stream delivers a frame. */
    kDeliverFrame,
};

inline constexpr int32_t kNoNumber = std::numeric_limits<int32_t>::min();

/** One thing that happens. Both the model and the real service do it. */
struct Step {
    Act act = {};
    User user = User::kNobody;
    /** Service types, or a camera device. */
    int32_t number = kNoNumber;
    /** Of a subscription. */
    Config config = {};
};

/**
 * What could be seen of a step until it was over: its answer, empty if nobody is answered; what the
 * stream was asked; what runs; and what each client was told.
 */
using Outcome = std::vector<std::string>;

inline const std::string kOk = "No error";

/** How both say what they saw: "notify open 1,2". */
inline std::string Text(std::string what, const std::vector<int32_t>& numbers) {
    for (size_t i = 0; i < numbers.size(); ++i)
        what += (i == 0 ? " " : ",") + std::to_string(numbers[i]);
    return what;
}

/** What the sensors 1, 2 and 3 all offer. */
struct Offer {
    int32_t width;
    int32_t height;
    std::vector<int32_t> rates;
};
inline const std::vector<int32_t> kSensors = {1, 2, 3};
inline const std::vector<Offer> kOffers = {{640, 480, {5, 10, 15}}, {320, 240, {5, 10, 30}}};

/** Camera devices and their sensors. The one without a number (-1) keeps nobody out. */
inline const std::map<int, std::vector<int32_t>> kCameras = {
        {5, {2}}, {6, {1}}, {7, {2, 1}}, {8, {4}}, {-1, {3}}};

/** No sensor above it is known to anyone. */
inline constexpr int32_t kLastSensor = 4;

}  // namespace zarvo::test
