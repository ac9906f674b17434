#include "tests/model/Process.h"

#include <utility>

#include "tests/model/World.h"

namespace zarvo::test {

using ndk::ScopedAStatus;

ScopedAStatus Listener::onAONEvent(
        int64_t handle, const aidl::vendor::zarvo::hardware::camera::aon::AONCallBackInfo&) {
    return Keep(FrameText(handle));
}

ScopedAStatus Listener::onSensorStateChanged(
        int64_t handle,
        const aidl::vendor::zarvo::hardware::camera::aon::AONSensorStateInfo& info) {
    return Keep(StateText(handle, info.sensorId, info.state));
}

ScopedAStatus Listener::Keep(std::string news) {
    const std::lock_guard lock(mMutex);
    mNews.push_back(std::move(news));
    return ScopedAStatus::ok();
}

std::vector<std::string> Listener::Take() {
    const std::lock_guard lock(mMutex);
    return std::exchange(mNews, {});
}

Process::Process() {
    AIBinder_linkToDeath(mProxy.get(), mGate.get(), this);
}

Process::~Process() {
    Kill();
    TellDeath();
}

std::shared_ptr<Process::IAONServiceCallBack> Process::Callback() const {
    return IAONServiceCallBack::fromBinder(mProxy);
}

void Process::TellDeath() {
    mMayBeTold.release();
    mConnection->WaitForNotices();
}

void Process::HoldNotice(void* process) {
    static_cast<Process*>(process)->mMayBeTold.acquire();
}

}  // namespace zarvo::test
