#pragma once

#include <android/binder_parcel_utils.h>

#include <string>
#include <string_view>

#include "tests/binder/Hex.h"

namespace zarvo::host::aidl {

using tests::Hex;
using tests::ParcelOf;

/** What AParcel_writeData makes of a value, in hexadecimal digits. */
template <typename T>
std::string Written(const T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    const binder_status_t status = ndk::AParcel_writeData(parcel.get(), value);
    return status == STATUS_OK ? Hex(parcel.get()) : "status " + std::to_string(status);
}

/** Whether AParcel_readData makes the same value of the bytes, and reads them all. */
template <typename T>
bool ReadsAs(std::string_view hex, const T& value) {
    const ndk::ScopedAParcel parcel = ParcelOf(std::string(hex));
    T read{};
    return ndk::AParcel_readData(parcel.get(), &read) == STATUS_OK && read == value &&
           AParcel_getDataPosition(parcel.get()) == static_cast<int32_t>(hex.size() / 2);
}

}  // namespace zarvo::host::aidl
