// What the sensors offer, asked once.

#include "manager/AONManager.h"
#include "platform/Log.h"

namespace zarvo::aon {
namespace {

/** Every listed sensor offers every service type, whatever mode the stream reports for it. */
constexpr int32_t kAllServiceTypes = 0x3F;

}  // namespace

void AONManager::GetAonSensorInfoList(std::vector<AonSensorInfo>& out) {
    ScopedLock lock(mMutex);
    GetAonSensorInfoListLocked(out);
}

void AONManager::GetAonSensorInfoListLocked(std::vector<AonSensorInfo>& out) {
    if (mAonSensorInfoList.empty()) {
        AON_LOGI(kWho, "Init Aon Sensor Info");
        if (mAovStream == nullptr) {
            AON_LOGE(kWho, "aov stream is null");
            return;
        }
        for (const int sensorId : mAovStream->getSensorIdList()) {
            mAonSensorInfoList.push_back(QuerySensorLocked(sensorId));
        }
    }
    out = mAonSensorInfoList;
}

AonSensorInfo AONManager::QuerySensorLocked(int32_t sensorId) {
    const std::vector<aov_sensor_info> records = mAovStream->getSensorInfo(sensorId);
    AON_LOGI(kWho, "sensorId:%lld, sensor info size:%lld", static_cast<long long>(sensorId),
             static_cast<long long>(records.size()));
    AonSensorInfo sensor;
    sensor.sensorId = sensorId;
    for (const aov_sensor_info& record : records) {
        sensor.sizes.push_back({record.width, record.height, record.rates});
        sensor.reserved1 = record.info;
    }
    int mode = 0;
    const int status = mAovStream->getSensorMode(sensorId, &mode);
    if (status != 0) {
        AON_LOGE(kWho, "fail to getSensorMode, status=%d, sensorId=%lld, mode=0x%llx", status,
                 static_cast<long long>(sensorId), static_cast<unsigned long long>(mode));
    }
    sensor.supportMode = kAllServiceTypes;
    AON_LOGI(kWho, "sensorId=%lld, support mode=0x%llx", static_cast<long long>(sensorId),
             static_cast<unsigned long long>(mode));
    return sensor;
}

}  // namespace zarvo::aon
