// Whatever a parcel holds: a record that can be read can be written, and reads the same again.

#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/AONSensorStateInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/SensorConfigInfo.h>
#include <aidl/zarvo/aon/host/CameraDevice.h>
#include <aidl/zarvo/aon/host/FaultPoint.h>
#include <aidl/zarvo/aon/host/RecordFaults.h>
#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>

#include <array>
#include <cstdlib>
#include <vector>

#include "fuzz/Input.h"

namespace {

using namespace aidl::vendor::zarvo::hardware::camera::aon;
namespace host = aidl::zarvo::aon::host;
using Bytes = std::span<const uint8_t>;

template <typename T>
bool Read(Bytes bytes, T* value, size_t* length) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    if (AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size()) != STATUS_OK) std::abort();
    if (value->readFromParcel(parcel.get()) != STATUS_OK) return false;
    *length = static_cast<size_t>(AParcel_getDataPosition(parcel.get()));
    return true;
}

template <typename T>
std::vector<uint8_t> Written(const T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    if (value.writeToParcel(parcel.get()) != STATUS_OK) std::abort();
    std::vector<uint8_t> bytes(static_cast<size_t>(AParcel_getDataSize(parcel.get())));
    AParcel_marshal(parcel.get(), bytes.data(), 0, bytes.size());
    return bytes;
}

/** Compares bytes: numbers that are none differ from themselves. */
template <typename T>
void Check(Bytes bytes) {
    T value;
    size_t length = 0;
    if (!Read(bytes, &value, &length)) return;
    (void)value.toString();
    const std::vector<uint8_t> written = Written(value);
    T again;
    if (!Read(written, &again, &length) || length != written.size()) std::abort();
    if (Written(again) != written) std::abort();
}

constexpr std::array kChecks{
        Check<AONCallBackInfo>,    Check<AONResult>,          Check<AONResultValue>,
        Check<AONSensorInfo>,      Check<AONSensorStateInfo>, Check<FrameInfo>,
        Check<SensorConfigInfo>,   Check<host::CameraDevice>, Check<host::FaultPoint>,
        Check<host::RecordFaults>,
};

}  // namespace

/** The input is a byte that chooses the record, and the parcel. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zarvo::fuzz::Input input(data, size);
    kChecks[input.Take<uint8_t>() % kChecks.size()](input.TakeRest());
    return 0;
}
