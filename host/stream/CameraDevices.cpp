#include "host/stream/CameraDevices.h"

#include <utility>

namespace zarvo::host {

CameraDevices& CameraDevices::Instance() {
    static auto* const devices = new CameraDevices();
    return *devices;
}

void CameraDevices::SetDevices(std::map<int, std::vector<int>> devices) {
    const std::lock_guard lock(mMutex);
    mDevices = std::move(devices);
}

std::map<int, std::vector<int>> CameraDevices::Devices() const {
    const std::lock_guard lock(mMutex);
    return mDevices;
}

std::vector<int> CameraDevices::getSensorIdsOfDevice(int instanceId) {
    const std::lock_guard lock(mMutex);
    const auto found = mDevices.find(instanceId);
    return found == mDevices.end() ? std::vector<int>{} : found->second;
}

}  // namespace zarvo::host
