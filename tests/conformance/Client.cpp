#include "tests/conformance/Client.h"

#include <android/binder_manager.h>

#include <algorithm>

namespace conformance {

using aon::IAONService;
using aon::SensorConfigInfo;

std::shared_ptr<IAONService> FindService() {
    return IAONService::fromBinder(ndk::SpAIBinder(AServiceManager_checkService(kInstance)));
}

std::vector<aon::AONSensorInfo> Sensors(IAONService& service) {
    std::vector<aon::AONSensorInfo> sensors;
    service.getAonSensorInfoList(&sensors);
    return sensors;
}

bool FirstConfig(const std::vector<aon::AONSensorInfo>& sensors, int32_t types,
                 SensorConfigInfo* config) {
    for (const auto& sensor : sensors) {
        for (const auto& size : sensor.frameInfos) {
            if (size.supportRates.empty()) continue;
            config->sensorId = sensor.sensorId;
            config->frameWidth = size.frameWidth;
            config->frameHeight = size.frameHeight;
            config->fps = *std::max_element(size.supportRates.begin(), size.supportRates.end());
            config->serviceType = types;
            config->deliveryMode = IAONService::DELIVERY_MODE_TIME_BASED;
            return true;
        }
    }
    return false;
}

}  // namespace conformance
