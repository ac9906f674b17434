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

Client::~Client() {
    receiver->SetInState(nullptr);
    if (mGiven == 0) return;
    service->unsubscribeSensor(mGiven);
    service->unregisterClient(mGiven);
}

std::string Client::Register(int32_t types) {
    const auto status = service->registerClient(receiver, types, &handle);
    if (status.isOk()) mGiven = handle;
    return Answer(status);
}

std::string Client::Subscribe(const SensorConfigInfo& config) const {
    return Answer(service->subscribeSensor(handle, config));
}

std::string Client::Start(int32_t types) const {
    return Answer(service->startService(handle, types));
}

std::string Client::Stop(int32_t types) const {
    return Answer(service->stopService(handle, types));
}

std::string Client::Unsubscribe() const {
    return Answer(service->unsubscribeSensor(handle));
}

std::string Client::Unregister() const {
    return Answer(service->unregisterClient(handle));
}

}  // namespace conformance
