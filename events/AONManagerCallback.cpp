#include "events/AONManagerCallback.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "events/DebugDump.h"
#include "events/ResultItems.h"
#include "events/ResultParsers.h"
#include "platform/Log.h"
#include "platform/Properties.h"

namespace zarvo::aon {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

namespace {

constexpr char kWho[] = "AONManagerCallback";

/** Items of an event with every result, so that the list is allocated once. */
constexpr size_t kMostResults = 14;

void ParseResults(std::vector<AONResult>& results, const aov_event& event) {
    const uint32_t types = event.serviceType;
    if (types & IAONService::SERVICE_TYPE_FUSION) {
        ParseFusionResult(results, event.output, event.outputSize);
    }
    if (types & IAONService::SERVICE_TYPE_FACE_ANGLE) {
        ParseFaceAngleResult(results, event.output, event.outputSize);
    }
    if (types & IAONService::SERVICE_TYPE_GAZE) {
        ParseGazeResult(results, event.output, event.outputSize);
    }
    if (types & IAONService::SERVICE_TYPE_FACE_FEATURE) {
        ParseFaceFeatureResult(results, event.output, event.outputSize);
    }
    ParseImageData(results, &event);
}

void AppendFrameItem(std::vector<AONResult>& results, int32_t key, const char* name,
                     uint32_t value) {
    const auto number = static_cast<int32_t>(value);
    AppendInt(results, key, number);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "onCallback-> callBackInfo.%s:%d", name, number);
    }
}

}  // namespace

std::shared_ptr<AONManagerCallback> AONManagerCallback::create(
        const std::shared_ptr<IOutEventCallback>& callback) {
    return std::make_shared<AONManagerCallback>(callback);
}

AONManagerCallback::AONManagerCallback(const std::shared_ptr<IOutEventCallback>& callback)
    : mCallback(callback) {}

void AONManagerCallback::onCallback(aov_event* event) {
    if (event == nullptr) return;
    if (event->serviceType == 0) AON_LOGW(kWho, "onCallback serviceType == 0");

    AONCallBackInfo info;
    info.serviceType = static_cast<int32_t>(event->serviceType);
    info.results.reserve(kMostResults);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "onCallback-> service type:%x", event->serviceType);
    }
    if (properties::DumpApu() == 1) dumpOutput(event);

    ParseResults(info.results, *event);
    AppendFrameItem(info.results, AONResult::RESULT_KEY_FRAME_ID, "frame_id", event->frame_id);
    AppendFrameItem(info.results, AONResult::RESULT_KEY_FRAME_WIDTH, "frame_width",
                    event->frame_width);
    AppendFrameItem(info.results, AONResult::RESULT_KEY_FRAME_HEIGHT, "frame_height",
                    event->frame_height);
    if (properties::VerboseLog()) {
        AON_LOGD(kWho, "onCallback-> callBackInfo.results.size:%d",
                 static_cast<int>(info.results.size()));
    }
    if (mCallback != nullptr) mCallback->OnAONEvent(info);
}

void AONManagerCallback::OnServiceStart(int sensorId) {
    ReportState(sensorId, AONSensorStateInfo::SENSOR_STATE_STARTED);
}

void AONManagerCallback::OnServiceStop(int sensorId) {
    ReportState(sensorId, AONSensorStateInfo::SENSOR_STATE_IDLE);
}

void AONManagerCallback::OnSensorIdle(int sensorId) {
    ReportState(sensorId, AONSensorStateInfo::SENSOR_STATE_IDLE);
}

void AONManagerCallback::OnSensorBusy(int sensorId) {
    ReportState(sensorId, AONSensorStateInfo::SENSOR_STATE_BUSY);
}

void AONManagerCallback::ReportState(int sensorId, int state) {
    if (mCallback == nullptr) return;
    AONSensorStateInfo info;
    info.sensorId = sensorId;
    info.state = state;
    mCallback->OnAONSensorEvent(info);
}

}  // namespace zarvo::aon
