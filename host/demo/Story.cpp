#include "host/demo/Story.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>

#include <chrono>
#include <string>
#include <string_view>

#include "host/demo/DemoClient.h"
#include "host/demo/DemoControls.h"
#include "host/demo/DemoService.h"
#include "host/demo/Narrator.h"
#include "host/demo/Stage.h"

namespace zarvo::host::demo {

using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;
using aidl::vendor::zarvo::hardware::camera::aon::SensorConfigInfo;

namespace {

using Cast = DemoControls::Cast;

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
    Story(Narrator& narrator, std::chrono::milliseconds pause)
        : mNarrator(narrator),
          mPause(pause),
          mStage(narrator),
          mService(mStage, narrator),
          mControls(mStage, narrator),
          mAlice("alice", mStage, narrator),
          mBob("bob", mStage, narrator) {}

    void ServiceComesUp(uint64_t seed, bool verbose) {
        Step("The service starts; its clients wait for it, in processes of their own");
        mNarrator.Remark(mService.GetProcess().Title() + ", its clients " +
                         mAlice.GetActor().GetProcess().Title() + " and " +
                         mBob.GetActor().GetProcess().Title() + ", and the simulator's " +
                         mControls.GetActor().GetProcess().Title());
        for (Actor* const actor : {&mControls.GetActor(), &mAlice.GetActor(), &mBob.GetActor()})
            actor->AwaitReady();
        mNarrator.Remark("All have found it.");
        mControls.SetSeed(seed);
        if (verbose) mControls.SetVerbose();
    }

    void AliceSubscribes() {
        Step("A client asks which sensors there are, registers and subscribes");
        mAlice.ListSensors();
        mAlice.Register(kFusion | kFaceAngle | kGaze);
        mAlice.Subscribe(Config(640, 480, kFusion | kFaceAngle | kGaze));
    }

    void EventsArrive() {
        Step("It starts two services, and events arrive");
        mAlice.Start(kFusion | kGaze);
        mAlice.WatchEvents({kFusion | kGaze, 1}, 5);
        mNarrator.Remark("Somebody joins:");
        Show(Cast::TWO, 2);
        mNarrator.Remark("All of them go:");
        Show(Cast::NOBODY, 0);
        mNarrator.Remark("From here on people come and go:");
        mControls.SetCast(Cast::STORY);
        mAlice.WatchEvents({kFusion | kGaze}, 3);
    }

    void AliceStopsGaze() {
        Step("It stops one of them: the stream starts anew with the rest");
        mAlice.Stop(kGaze);
        mAlice.WatchEvents({kFusion}, 8);
    }

    void CameraTakesTheSensor() {
        Step("The regular camera opens and takes the sensor");
        mControls.OpenCamera(kCamera);
        mAlice.AwaitState(kSensor, AONSensorStateInfo::SENSOR_STATE_BUSY);
        CheckSensor(false);
        mNarrator.Remark("While the camera holds the sensor, a start is refused:");
        mAlice.Start(kFusion, DemoClient::Expected::kRefused);
    }

    void CameraGivesItBack() {
        Step("The camera closes; the client starts again");
        mControls.CloseCamera(kCamera);
        mAlice.AwaitState(kSensor, AONSensorStateInfo::SENSOR_STATE_IDLE);
        mAlice.Start(kFusion | kFaceAngle);
        mAlice.WatchEvents({kFusion | kFaceAngle}, 8);
    }

    void BobReplacesAlice() {
        Step("A second client registers and takes the first one's place");
        mBob.Register(kFusion | kFaceFeature);
        CheckSensor(false);
        mBob.Subscribe(Config(320, 240, kFusion | kFaceFeature));
        mBob.Start(kFusion | kFaceFeature);
        mBob.WatchEvents({kFusion | kFaceFeature}, 8);
    }

    void BobDies() {
        Step("The second client is killed while events flow; the sensor is released");
        CheckSensor(true);
        const size_t before = mService.LogSize();
        mBob.Kill();
        const size_t noticed =
                mService.AwaitLog("unregister client for remote callback died", before);
        mService.AwaitLog("stop sensor success", noticed);
        CheckSensor(false);
    }

    void AliceEndsPolitely() {
        Step("The first client comes back, and this time goes in good order");
        mAlice.Register(kGaze);
        mAlice.Subscribe(Config(640, 480, kGaze));
        mAlice.Start(kGaze);
        mAlice.WatchEvents({kGaze}, 5);
        mAlice.Stop(kGaze);
        mAlice.Unsubscribe();
        mAlice.Unregister();
        CheckSensor(false);
    }

    void EverythingEnds() {
        Step("The client ends, then the service; nothing is left");
        mAlice.Leave();
        mControls.GetActor().Dismiss();
        mService.Terminate();
        CheckLast(Stage::IsAlone(), "No process is left.");
        CheckLast(mStage.RemoveDirectory(),
                  "The directory of the service's sockets is empty, and gone.");
    }

    void Summary() {
        Step("Summary");
        const int events = mAlice.EventsSeen() + mBob.EventsSeen();
        const int states = mAlice.StatesSeen() + mBob.StatesSeen();
        mNarrator.Remark(std::to_string(events) + " events and " + std::to_string(states) +
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
    void Step(std::string_view title) {
        mStage.Pause(mPause);
        mNarrator.Step(title);
    }
    /** Changes who is in front of the sensor, and waits for events that tell it. */
    void Show(Cast cast, int32_t faces) {
        mControls.SetCast(cast);
        mAlice.WatchEvents({kFusion | kGaze, faces}, 3);
    }
    void CheckSensor(bool streaming) {
        const bool isStreaming = mControls.IsStreaming();
        mNarrator.Remark(isStreaming ? "The sensor runs." : "The sensor is off.");
        mNarrator.Check(isStreaming == streaming,
                        streaming ? "the sensor runs" : "the sensor is off");
    }
    void CheckLast(bool holds, std::string_view what) {
        if (holds) mNarrator.Remark(what);
        mNarrator.Check(holds, what);
    }

    Narrator& mNarrator;
    const std::chrono::milliseconds mPause;
    Stage mStage;
    DemoService mService;
    DemoControls mControls;
    DemoClient mAlice;
    DemoClient mBob;
};

}  // namespace

bool PlayStory(const Options& options) {
    Narrator narrator;
    Story story(narrator, options.quick ? std::chrono::milliseconds(0) : kPauseForReaders);
    story.ServiceComesUp(options.seed, options.verbose);
    story.AliceSubscribes();
    story.EventsArrive();
    story.AliceStopsGaze();
    story.CameraTakesTheSensor();
    story.CameraGivesItBack();
    story.BobReplacesAlice();
    story.BobDies();
    story.AliceEndsPolitely();
    story.EverythingEnds();
    story.Summary();
    return narrator.Failures() == 0;
}

}  // namespace zarvo::host::demo
