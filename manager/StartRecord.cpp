#include "manager/StartRecord.h"

#include "platform/Log.h"

namespace zarvo::aon {
namespace {

constexpr char kWho[] = "AONManager";
constexpr int32_t kTimeBased = 1;

struct BitDepthFormat {
    int32_t depth;
    int32_t format;
};
constexpr BitDepthFormat kFormats[] = {{8, 0x1000}, {10, 0x2019}, {12, 0x201E}};

/** A rate that md mode imposes; the service types are compared as a whole, not bit by bit. */
struct MdModeRate {
    int32_t serviceType;
    int32_t frameRate;
};
constexpr MdModeRate kMdModeRates[] = {{5, 2}, {1, 3}};

int32_t MdModeFrameRate(const SensorConfig& config) {
    for (const MdModeRate& rate : kMdModeRates) {
        if (rate.serviceType == config.serviceType) return rate.frameRate;
    }
    return config.fps;
}

}  // namespace

void TransformSensorConfigInfoToUserParam(const SensorConfig& config, user_param& param) {
    param.sensorId = config.sensorId;
    param.frameWidth = config.frameWidth;
    param.frameHeight = config.frameHeight;
    param.frameRate = config.fps;
    param.mdFrameRate = 0;
    param.serviceType = config.serviceType;
    if (config.deliveryMode == kTimeBased) return;
    param.mdFrameRate = config.fps;
    param.frameRate = MdModeFrameRate(config);
    AON_LOGI(kWho, "open md mode, change %d fps to %d --", param.mdFrameRate, param.frameRate);
}

int32_t ImageFormatOfBitDepth(int32_t depth) {
    for (const BitDepthFormat& entry : kFormats) {
        if (entry.depth == depth) return entry.format;
    }
    AON_LOGW(kWho, "unknown depth=%x", static_cast<unsigned>(depth));
    return kFormats[0].format;
}

}  // namespace zarvo::aon
