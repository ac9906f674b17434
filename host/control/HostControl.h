#pragma once

#include <aidl/zarvo/aon/host/BnHostControl.h>
#include <android/binder_auto_utils.h>

#include <string>
#include <vector>

namespace zarvo::host {

/**
 * The controls of this process, for others: see IHostControl.aidl. Has no state of its own; what
 * it turns is the process's. Thread-safe.
 */
class HostControl : public aidl::zarvo::aon::host::BnHostControl {
  public:
    using CameraDevice = aidl::zarvo::aon::host::CameraDevice;
    using FaultPointInfo = aidl::zarvo::aon::host::FaultPoint;
    using RecordFaultOrder = aidl::zarvo::aon::host::RecordFaults;
    using CastChoice = aidl::zarvo::aon::host::Cast;
    using Status = ndk::ScopedAStatus;

    /** `service` is whose dump is given. */
    explicit HostControl(ndk::SpAIBinder service) : mService(std::move(service)) {}

    Status setSeed(int64_t seed) override;
    Status setCast(CastChoice cast) override;
    Status setJitter(float fraction) override;
    Status isStreaming(bool* streaming) override;
    Status listCameras(std::vector<CameraDevice>* devices) override;
    Status openCamera(int32_t instanceId) override;
    Status closeCamera(int32_t instanceId) override;
    Status stormCamera(int32_t instanceId, int32_t cycles) override;
    Status listFaults(std::vector<FaultPointInfo>* faults) override;
    Status failCalls(const std::string& name, int64_t first, int64_t count) override;
    Status setRecordFaults(const RecordFaultOrder& faults, int64_t first, int64_t count) override;
    Status setEventsAfterStop(int32_t count) override;
    Status setStopDelay(int32_t milliseconds) override;
    Status clearFaults() override;
    Status getProperty(const std::string& name, std::string* value) override;
    Status setProperty(const std::string& name, const std::string& value) override;
    Status dumpService(const std::vector<std::string>& arguments, std::string* text) override;

  private:
    const ndk::SpAIBinder mService;
};

}  // namespace zarvo::host
