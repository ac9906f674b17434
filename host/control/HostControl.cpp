#include "host/control/HostControl.h"

#include <cutils/properties.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "host/binder/services/FileDescriptor.h"
#include "host/control/FaultTable.h"
#include "host/cutils/PropertyStore.h"
#include "host/stream/CameraDevices.h"
#include "host/stream/SimulatorControl.h"

namespace zarvo::host {

namespace {

using Status = ndk::ScopedAStatus;

/** A dump that is larger is cut. */
constexpr size_t kMostDumpBytes = 1U << 20U;

SimulatorControl& Simulator() {
    return SimulatorControl::Instance();
}

Status Refuse(const std::string& why) {
    return Status::fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, why.c_str());
}

Status RefuseOrder(int64_t first) {
    return Refuse("the first call is counted from 1, not " + std::to_string(first));
}

bool IsDevice(int32_t instanceId) {
    return CameraDevices::Instance().Devices().contains(instanceId);
}

Status RefuseDevice(int32_t instanceId) {
    return Refuse("there is no camera device " + std::to_string(instanceId));
}

uint64_t Count(int64_t count) {
    return count < 0 ? SimulatorControl::kAll : static_cast<uint64_t>(count);
}

/** Nothing for a negative number; what is too large becomes the largest. */
std::optional<uint32_t> Lie(int64_t number) {
    if (number < 0) return std::nullopt;
    return static_cast<uint32_t>(std::min<int64_t>(number, UINT32_MAX));
}

std::string ReadBack(int fd) {
    std::string text;
    std::array<char, 4096> part{};
    ssize_t length = 0;
    lseek(fd, 0, SEEK_SET);
    while (text.size() < kMostDumpBytes && (length = read(fd, part.data(), part.size())) > 0)
        text.append(part.data(), static_cast<size_t>(length));
    return text;
}

}  // namespace

Status HostControl::setSeed(int64_t seed) {
    Simulator().SetSeed(static_cast<uint64_t>(seed));
    return Status::ok();
}

Status HostControl::setCast(CastChoice cast) {
    if (cast < CastChoice::STORY || cast > CastChoice::TWO) return Refuse("there is no such cast");
    constexpr std::array kCasts{Cast::kStory, Cast::kNobody, Cast::kOne, Cast::kTwo};
    Simulator().SetCast(kCasts[static_cast<size_t>(cast)]);
    return Status::ok();
}

Status HostControl::setJitter(float fraction) {
    if (!(fraction >= 0 && fraction <= 1)) return Refuse("jitter is from 0 to 1");
    Simulator().SetJitter(fraction);
    return Status::ok();
}

Status HostControl::isStreaming(bool* streaming) {
    *streaming = Simulator().Running();
    return Status::ok();
}

Status HostControl::listCameras(std::vector<CameraDevice>* devices) {
    devices->clear();
    const std::vector<int> open = Simulator().OpenCameras();
    for (const auto& [instanceId, sensorIds] : CameraDevices::Instance().Devices()) {
        CameraDevice device;
        device.instanceId = instanceId;
        device.sensorIds = sensorIds;
        device.isOpen = std::find(open.begin(), open.end(), instanceId) != open.end();
        devices->push_back(device);
    }
    return Status::ok();
}

Status HostControl::openCamera(int32_t instanceId) {
    if (!IsDevice(instanceId)) return RefuseDevice(instanceId);
    Simulator().OpenCamera(instanceId);
    return Status::ok();
}

Status HostControl::closeCamera(int32_t instanceId) {
    if (!IsDevice(instanceId)) return RefuseDevice(instanceId);
    Simulator().CloseCamera(instanceId);
    return Status::ok();
}

Status HostControl::stormCamera(int32_t instanceId, int32_t cycles) {
    if (!IsDevice(instanceId)) return RefuseDevice(instanceId);
    if (cycles < 0) return Refuse("a storm has no negative number of cycles");
    Simulator().StormCamera(instanceId, static_cast<uint32_t>(cycles));
    return Status::ok();
}

Status HostControl::listFaults(std::vector<FaultPointInfo>* faults) {
    faults->clear();
    for (const NamedFault& fault : AllFaults()) {
        FaultPointInfo info;
        info.name = fault.name;
        info.calls = static_cast<int64_t>(fault.point->Calls());
        faults->push_back(info);
    }
    return Status::ok();
}

Status HostControl::failCalls(const std::string& name, int64_t first, int64_t count) {
    FaultPoint* const point = FindFault(name);
    if (point == nullptr) return Refuse("there is no fault point " + name);
    if (first < 1) return RefuseOrder(first);
    point->FailCalls(static_cast<uint64_t>(first), Count(count));
    return Status::ok();
}

Status HostControl::setRecordFaults(const RecordFaultOrder& faults, int64_t first, int64_t count) {
    if (first < 1) return RefuseOrder(first);
    RecordFaults lies;
    lies.outputSize = Lie(faults.outputSize);
    lies.fusionCount = Lie(faults.fusionCount);
    lies.imageHeight = Lie(faults.imageHeight);
    lies.imageStride = Lie(faults.imageStride);
    lies.nullEvent = faults.nullEvent;
    Simulator().SetRecordFaults(lies, static_cast<uint64_t>(first), Count(count));
    return Status::ok();
}

Status HostControl::setEventsAfterStop(int32_t count) {
    if (count < 0) return Refuse("there is no negative number of events");
    Simulator().SetEventsAfterStop(static_cast<uint32_t>(count));
    return Status::ok();
}

Status HostControl::setStopDelay(int32_t milliseconds) {
    if (milliseconds < 0) return Refuse("a delay is not negative");
    Simulator().SetStopDelay(std::chrono::milliseconds(milliseconds));
    return Status::ok();
}

Status HostControl::clearFaults() {
    for (const NamedFault& fault : AllFaults())
        fault.point->Clear();
    Simulator().SetRecordFaults({});
    Simulator().SetEventsAfterStop(0);
    Simulator().SetStopDelay(std::chrono::milliseconds(0));
    return Status::ok();
}

Status HostControl::getProperty(const std::string& name, std::string* value) {
    std::array<char, kMaxPropertyValue + 1> room{};
    const size_t length = PropertyStore::Instance().Read(name, room);
    value->assign(room.data(), length);
    return Status::ok();
}

Status HostControl::setProperty(const std::string& name, const std::string& value) {
    if (const char* const fault = PropertyFault(name, value); fault != nullptr)
        return Refuse(fault);
    return PropertyStore::Instance().Set(name, value)
                   ? Status::ok()
                   : Status::fromExceptionCodeWithMessage(EX_ILLEGAL_STATE, "it was refused");
}

Status HostControl::dumpService(const std::vector<std::string>& arguments, std::string* text) {
    const FileDescriptor file(memfd_create("dump", MFD_CLOEXEC));
    if (!file.IsOpen()) return Status::fromStatus(STATUS_NO_MEMORY);
    std::vector<const char*> words;
    for (const std::string& argument : arguments)
        words.push_back(argument.c_str());
    const binder_status_t status = AIBinder_dump(mService.get(), file.Get(), words.data(),
                                                 static_cast<uint32_t>(words.size()));
    *text = ReadBack(file.Get());
    return status == STATUS_OK ? Status::ok() : Refuse(*text);
}

}  // namespace zarvo::host
