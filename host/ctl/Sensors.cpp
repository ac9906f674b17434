#include "host/ctl/Sensors.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdio>

#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

using aidl::vendor::zarvo::hardware::camera::aon::FrameInfo;

constexpr int kPlainRate = 5;
/** The delivery mode that is not time-based. */
constexpr int32_t kMotionDetect = 0;

const AONSensorInfo* Choose(Arguments& arguments, const std::vector<AONSensorInfo>& sensors) {
    if (sensors.empty()) arguments.SetError("the service offers no sensor");
    if (sensors.empty()) return nullptr;
    const int64_t wanted = arguments.Number("--sensor", sensors.front().sensorId, INT_MIN, INT_MAX);
    const auto sensor = std::find_if(sensors.begin(), sensors.end(), [&](const auto& offered) {
        return offered.sensorId == wanted;
    });
    if (sensor != sensors.end()) return &*sensor;
    arguments.SetError("there is no sensor " + std::to_string(wanted));
    return nullptr;
}

bool ParseSize(std::string_view text, int32_t* width, int32_t* height) {
    const char* const end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, *width);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x') return false;
    const auto second = std::from_chars(first.ptr + 1, end, *height);
    return second.ec == std::errc() && second.ptr == end;
}

/** The lowest rate of at least the plain one, or else the highest. */
int32_t PlainRate(const FrameInfo& frame) {
    std::vector<int32_t> rates(frame.supportRates.begin(), frame.supportRates.end());
    std::sort(rates.begin(), rates.end());
    const auto rate = std::lower_bound(rates.begin(), rates.end(), kPlainRate);
    if (rate != rates.end()) return *rate;
    return rates.empty() ? kPlainRate : rates.back();
}

void PrintSensor(const AONSensorInfo& sensor) {
    for (const FrameInfo& frame : sensor.frameInfos) {
        std::printf("sensor %d  %4dx%-4d  rates", sensor.sensorId, frame.frameWidth,
                    frame.frameHeight);
        for (const int32_t rate : frame.supportRates)
            std::printf(" %d", rate);
        std::puts("");
    }
}

}  // namespace

std::optional<int32_t> ParseTypes(std::string_view list) {
    constexpr std::pair<std::string_view, int32_t> kTypes[] = {
            {"fusion", IAONService::SERVICE_TYPE_FUSION},
            {"angle", IAONService::SERVICE_TYPE_FACE_ANGLE},
            {"gaze", IAONService::SERVICE_TYPE_GAZE},
            {"feature", IAONService::SERVICE_TYPE_FACE_FEATURE}};
    int32_t types = 0;
    while (!list.empty()) {
        const std::string_view name = list.substr(0, list.find(','));
        list.remove_prefix(std::min(list.size(), name.size() + 1));
        const auto type = std::find_if(std::begin(kTypes), std::end(kTypes),
                                       [&](const auto& known) { return known.first == name; });
        if (type == std::end(kTypes)) return std::nullopt;
        types |= type->second;
    }
    return types == 0 ? std::nullopt : std::optional(types);
}

SensorConfigInfo ChooseConfig(Arguments& arguments, const std::vector<AONSensorInfo>& sensors) {
    SensorConfigInfo config;
    const AONSensorInfo* const sensor = Choose(arguments, sensors);
    if (sensor == nullptr) return config;
    config.sensorId = sensor->sensorId;
    FrameInfo frame;
    if (!sensor->frameInfos.empty()) frame = sensor->frameInfos.front();
    if (arguments.Has("--size") &&
        !ParseSize(arguments.Value("--size"), &frame.frameWidth, &frame.frameHeight)) {
        arguments.SetError("--size wants WIDTHxHEIGHT");
    }
    for (const FrameInfo& offered : sensor->frameInfos) {
        if (offered.frameWidth == frame.frameWidth && offered.frameHeight == frame.frameHeight) {
            frame = offered;
        }
    }
    config.frameWidth = frame.frameWidth;
    config.frameHeight = frame.frameHeight;
    config.fps = static_cast<int32_t>(arguments.Number("--rate", PlainRate(frame), 1, 1000));
    config.serviceType = ParseTypes(arguments.Value("--types", "fusion,gaze")).value_or(0);
    if (config.serviceType == 0) {
        arguments.SetError("--types wants a list of fusion, angle, gaze, feature");
    }
    config.deliveryMode =
            arguments.Has("--md") ? kMotionDetect : IAONService::DELIVERY_MODE_TIME_BASED;
    return config;
}

int RunSensors(Arguments&) {
    const auto service = FindService();
    if (service == nullptr) return kNoService;
    std::vector<AONSensorInfo> sensors;
    const int result = Report("list the sensors", service->getAonSensorInfoList(&sensors));
    for (const AONSensorInfo& sensor : sensors)
        PrintSensor(sensor);
    return result;
}

}  // namespace zarvo::host::ctl
