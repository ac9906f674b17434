// What the manager shows to people who look at it.

#include <algorithm>

#include "manager/AONManager.h"

namespace zarvo::aon {
namespace {

ManagerStatus::OpenDevice Describe(int32_t instanceId, const std::vector<int32_t>& sensorIds) {
    ManagerStatus::OpenDevice device;
    device.instanceId = instanceId;
    device.sensorCount = static_cast<uint32_t>(sensorIds.size());
    std::copy_n(sensorIds.begin(), std::min(sensorIds.size(), device.sensorIds.size()),
                device.sensorIds.begin());
    return device;
}

}  // namespace

void AONManager::NoteLocked(const Change& change) {
    mHistory.Note(change);
    PublishLocked();
}

void AONManager::PublishLocked() {
    ManagerStatus status;
    status.hasStream = mAovStream != nullptr;
    status.streamInited = mAovStreamInited;
    status.openedSensorId = mOpenedSensorId;
    status.serviceTypeStarted = mServiceTypeStarted;
    status.subscribed = mSensorConfig;
    for (const auto& [instanceId, sensorIds] : mOpenDeviceMap) {
        if (status.deviceCount < status.devices.size()) {
            status.devices[status.deviceCount] = Describe(instanceId, sensorIds);
        }
        ++status.deviceCount;
    }
    mStatus.Set(status);
}

}  // namespace zarvo::aon
