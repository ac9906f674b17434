#pragma once

#include <cstdint>
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
enum class User { kAlice, kBob, kCarol, kMallory };
inline constexpr User kUsers[] = {User::kAlice, User::kBob, User::kCarol};
inline constexpr int64_t kHandle = 1;
inline constexpr int64_t kMallorysHandle = 7;

/** What a step was answered, and what could be seen outside of the service until it was over. */
struct Outcome {
    /** kOk, with the handle of a registration; or the whole description of a refusal. */
    std::string answer;
    /** "alice: ..." for whatever a client was told, one client after the other. */
    std::vector<std::string> told;
    /** What the stream was asked, with the configuration of each start. */
    std::vector<std::string> stream;
    /** The service types that run, and whether the stream itself does. */
    std::string running;

    bool operator==(const Outcome&) const = default;
};

/**
 * What can happen around the service, one thing after the other. Both the model and the real
 * service are one, and every step makes sense at any time: what they answer has to be the same.
 *
 * A program that ends is started anew at once, with a callback that the service does not know.
 */
class World {
  public:
    virtual ~World() = default;

    virtual std::string Register(User user, int32_t types) = 0;
    virtual std::string RegisterNothing() = 0;
    virtual std::string Subscribe(User user, const Config& config) = 0;
    virtual std::string Start(User user, int32_t types) = 0;
    virtual std::string Stop(User user, int32_t types) = 0;
    virtual std::string Unsubscribe(User user) = 0;
    virtual std::string Unregister(User user) = 0;

    /** The program ends, and the service is told. */
    virtual void Die(User user) = 0;
    /** The program ends, but the notice of it stays on its way until TellDeath. */
    virtual void DieUnnoticed(User user) = 0;
    /** The oldest notice on its way arrives; nothing if there is none. */
    virtual void TellDeath() = 0;
    /** The service ends, and the next one takes its place. */
    virtual void RestartService() = 0;

    /** A camera device opens; without `listed`, the platform cannot say which sensors it has. */
    virtual void OpenCamera(int device, bool listed) = 0;
    virtual void CloseCamera(int device) = 0;
    virtual void RefuseNextStart() = 0;
    virtual void RefuseNextStop() = 0;
    virtual void RefuseNextCameraNotice() = 0;
    /** The stream delivers a frame. */
    virtual void DeliverFrame() = 0;

    /** What could be seen since the last call. */
    virtual Outcome Look(std::string answer) = 0;
};

/** What the sensors 1, 2 and 3 all offer. */
struct Offer {
    int32_t width;
    int32_t height;
    std::vector<int32_t> rates;
};
inline const std::vector<int32_t> kSensors = {1, 2, 3};
inline const std::vector<Offer> kOffers = {{640, 480, {5, 10, 15}}, {320, 240, {5, 10, 30}}};

/** Camera devices and their sensors. The one without a number (-1) keeps nobody out. */
struct Camera {
    int device;
    std::vector<int32_t> sensors;
};
inline const std::vector<Camera> kCameras = {{5, {2}}, {6, {1}}, {7, {2, 1}}, {8, {4}}, {-1, {3}}};

/** No sensor above it is known to anyone. */
inline constexpr int32_t kLastSensor = 4;

/** "alice" */
const char* NameOf(User user);

// How both worlds say what they saw.

inline const std::string kOk = "ok";
std::string Granted(int64_t handle);
std::string StateText(int64_t handle, int32_t sensorId, int32_t state);
std::string FrameText(int64_t handle);
std::string StartText(int32_t sensorId, int32_t width, int32_t height, int32_t fps, int32_t mdFps,
                      int32_t types);
std::string NoticeText(const std::vector<int32_t>& sensors, bool opened);
std::string RunningText(int32_t types, bool streamRuns);

}  // namespace zarvo::test
