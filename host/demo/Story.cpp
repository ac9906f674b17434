#include "host/demo/Story.h"

#include <chrono>
#include <memory>
#include <string>

#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include "host/demo/DemoClient.h"
#include "host/demo/Narrator.h"
#include "host/stream/SimulatorControl.h"
#include "service/AONService.h"

namespace zarvo::host::demo {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

namespace {

constexpr int32_t kFusion = IAONService::SERVICE_TYPE_FUSION;
constexpr int32_t kFaceAngle = IAONService::SERVICE_TYPE_FACE_ANGLE;
constexpr int32_t kGaze = IAONService::SERVICE_TYPE_GAZE;
constexpr int32_t kFaceFeature = IAONService::SERVICE_TYPE_FACE_FEATURE;

constexpr int32_t kSensor = 0;
constexpr std::chrono::milliseconds kPauseForReaders{500};
/** The camera device that uses that sensor. */
constexpr int kCamera = 0;

SensorConfigInfo Config(int32_t width, int32_t height, int32_t serviceTypes) {
    SensorConfigInfo config;
    config.sensorId = kSensor;
    config.frameWidth = width;
    config.frameHeight = height;
    config.fps = 10;
    config.serviceType = serviceTypes;
    config.deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
    return config;
}

/** The acts of the story, in their order; each leaves the stage as the next one finds it. */
class Story {
  public:
    explicit Story(Narrator& narrator) : mNarrator(narrator) {}

    void ServiceComesUp() {
        mNarrator.Step("The service starts");
        mService = ndk::SharedRefBase::make<aon::AONService>();
        mAlice = std::make_unique<DemoClient>("alice", mNarrator, mService);
        mBob = std::make_unique<DemoClient>("bob", mNarrator, mService);
    }

    void AliceSubscribes() {
        mNarrator.Step("A client asks which sensors there are, registers and subscribes");
        mAlice->ListSensors();
        mAlice->Register(kFusion | kFaceAngle | kGaze);
        mAlice->Subscribe(Config(640, 480, kFusion | kFaceAngle | kGaze));
    }

    void EventsArrive() {
        mNarrator.Step("It starts two services, and events arrive");
        mAlice->Start(kFusion | kGaze);
        mAlice->WatchEvents({kFusion | kGaze, 1}, 5);
        mNarrator.Remark("Somebody joins:");
        Show(Cast::kTwo, 2);
        mNarrator.Remark("All of them go:");
        Show(Cast::kNobody, 0);
        mNarrator.Remark("From here on people come and go:");
        SimulatorControl::Instance().SetCast(Cast::kStory);
        mAlice->WatchEvents({kFusion | kGaze}, 3);
    }

    void AliceStopsGaze() {
        mNarrator.Step("It stops one of them: the stream starts anew with the rest");
        mAlice->Stop(kGaze);
        mAlice->WatchEvents({kFusion}, 8);
    }

    void CameraTakesTheSensor() {
        mNarrator.Step("The regular camera opens and takes the sensor");
        SimulatorControl::Instance().OpenCamera(kCamera);
        mAlice->AwaitState(kSensor, AONSensorStateInfo::SENSOR_STATE_BUSY);
        CheckSensorIsOff();
        mNarrator.Remark("While the camera holds the sensor, a start is refused:");
        mAlice->Start(kFusion, DemoClient::Expected::kRefused);
    }

    void CameraGivesItBack() {
        mNarrator.Step("The camera closes; the client starts again");
        SimulatorControl::Instance().CloseCamera(kCamera);
        mAlice->AwaitState(kSensor, AONSensorStateInfo::SENSOR_STATE_IDLE);
        mAlice->Start(kFusion | kFaceAngle);
        mAlice->WatchEvents({kFusion | kFaceAngle}, 8);
    }

    void BobReplacesAlice() {
        mNarrator.Step("A second client registers and takes the first one's place");
        mBob->Register(kFusion | kFaceFeature);
        CheckSensorIsOff();
        mBob->Subscribe(Config(320, 240, kFusion | kFaceFeature));
        mBob->Start(kFusion | kFaceFeature);
        mBob->WatchEvents({kFusion | kFaceFeature}, 8);
    }

    void BobDies() {
        mNarrator.Step("The second client dies; the sensor is released");
        mBob->Kill();
        CheckSensorIsOff();
    }

    void AliceEndsPolitely() {
        mNarrator.Step("The first client comes back, and this time goes in good order");
        mAlice->Register(kGaze);
        mAlice->Subscribe(Config(640, 480, kGaze));
        mAlice->Start(kGaze);
        mAlice->WatchEvents({kGaze}, 5);
        mAlice->Stop(kGaze);
        mAlice->Unsubscribe();
        mAlice->Unregister();
        CheckSensorIsOff();
    }

    void ServiceGoesDown() {
        mNarrator.Step("The service ends");
        mEvents = mAlice->EventsSeen() + mBob->EventsSeen();
        mStates = mAlice->StatesSeen() + mBob->StatesSeen();
        mAlice.reset();
        mBob.reset();
        mService.reset();
        SimulatorControl::Instance().Shutdown();
    }

    void Summary() {
        mNarrator.Step("Summary");
        mNarrator.Remark(std::to_string(mEvents) + " events and " + std::to_string(mStates) +
                         " state notices reached the clients.");
        std::string lines;
        for (const auto& [letter, count] : mNarrator.LogLines()) {
            lines += (lines.empty() ? "" : ", ") + std::to_string(count) + " " + letter;
        }
        mNarrator.Remark("The service's log lines: " + lines +
                         ". What each W and E means: docs/refusals.md");
        mNarrator.Remark(std::to_string(mNarrator.Checks() - mNarrator.Failures()) + " of " +
                         std::to_string(mNarrator.Checks()) + " checks held.");
    }

  private:
    /** Changes who is in front of the sensor, and waits for events that tell it. */
    void Show(Cast cast, int32_t faces) {
        SimulatorControl::Instance().SetCast(cast);
        mAlice->WatchEvents({kFusion | kGaze, faces}, 3);
    }
    void CheckSensorIsOff() {
        const bool running = SimulatorControl::Instance().Running();
        mNarrator.Remark(running ? "The sensor runs." : "The sensor is off.");
        mNarrator.Check(!running, "the sensor is off");
    }

    Narrator& mNarrator;
    std::shared_ptr<aon::AONService> mService;
    std::unique_ptr<DemoClient> mAlice;
    std::unique_ptr<DemoClient> mBob;
    int mEvents = 0;
    int mStates = 0;
};

}  // namespace

bool PlayStory(uint64_t seed, bool quick) {
    SimulatorControl::Instance().SetSeed(seed);
    // Static, and made before the service's singletons, to hear their last words.
    static Narrator narrator(quick ? std::chrono::milliseconds(0) : kPauseForReaders);
    Story story(narrator);
    story.ServiceComesUp();
    story.AliceSubscribes();
    story.EventsArrive();
    story.AliceStopsGaze();
    story.CameraTakesTheSensor();
    story.CameraGivesItBack();
    story.BobReplacesAlice();
    story.BobDies();
    story.AliceEndsPolitely();
    story.ServiceGoesDown();
    story.Summary();
    return narrator.Failures() == 0;
}

}  // namespace zarvo::host::demo
