#include "events/AONManagerCallback.h"

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>

#include "events/DebugDump.h"
#include "events/ResultItems.h"
#include "events/ResultParsers.h"
#include "platform/Log.h"
#include "platform/Properties.h"
#include "platform/Trace.h"

namespace zarvo::aon {

using aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo;
using aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo;
using aidl::vendor::zarvo::hardware::camera::aon::IAONService;

namespace {

constexpr char kWho[] = "AONManagerCallback";

/** Items of an event with every result, so that the list is allocated once. */
constexpr size_t kMostResults = 14;

/** A decoder of the output region, run when the event has the service type. */
struct BlockParser {
    uint32_t serviceType;
    void (*parse)(std::vector<AONResult>& results, const uint8_t* output, uint32_t size);
};

/** Widens the size for the decoders that take it so. */
template <void (*kParse)(std::vector<AONResult>&, const uint8_t*, uint64_t)>
void Widened(std::vector<AONResult>& results, const uint8_t* output, uint32_t size) {
    kParse(results, output, size);
}

/** In the order of their items. */
constexpr BlockParser kBlockParsers[] = {
        {IAONService::SERVICE_TYPE_FUSION, ParseFusionResult},
        {IAONService::SERVICE_TYPE_FACE_ANGLE, Widened<ParseFaceAngleResult>},
        {IAONService::SERVICE_TYPE_GAZE, Widened<ParseGazeResult>},
        {IAONService::SERVICE_TYPE_FACE_FEATURE, Widened<ParseFaceFeatureResult>},
};

void ParseResults(std::vector<AONResult>& results, const aov_event& event) {
    const TraceSection trace("aon parse");
    for (const BlockParser& block : kBlockParsers) {
        if ((event.serviceType & block.serviceType) == 0) continue;
        block.parse(results, event.output, event.outputSize);
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
    if (properties::DumpApu() == 1) {
        const TraceSection trace("aon dump");
        dumpOutput(event);
    }

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
