#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_parcel.h>
#include <android/binder_parcel_utils.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host::aidl {

/** The bytes of a parcel in hexadecimal digits. */
inline std::string Hex(const AParcel* parcel) {
    std::vector<uint8_t> bytes(static_cast<size_t>(AParcel_getDataSize(parcel)));
    if (AParcel_marshal(parcel, bytes.data(), 0, bytes.size()) != STATUS_OK) return "unreadable";
    std::string text;
    for (const uint8_t byte : bytes) {
        constexpr std::string_view kDigits = "0123456789abcdef";
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xf];
    }
    return text;
}

/** A parcel that holds the given bytes, to be read from its start. */
inline ndk::ScopedAParcel FromHex(std::string_view text) {
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes.push_back(
                static_cast<uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
    }
    ndk::ScopedAParcel parcel(AParcel_create());
    AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size());
    AParcel_setDataPosition(parcel.get(), 0);
    return parcel;
}

/** What AParcel_writeData makes of a value. */
template <typename T>
std::string Written(const T& value) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    const binder_status_t status = ndk::AParcel_writeData(parcel.get(), value);
    return status == STATUS_OK ? Hex(parcel.get()) : "status " + std::to_string(status);
}

/** Whether AParcel_readData makes the same value of the bytes, and reads them all. */
template <typename T>
bool ReadsAs(std::string_view hex, const T& value) {
    const ndk::ScopedAParcel parcel = FromHex(hex);
    T read{};
    return ndk::AParcel_readData(parcel.get(), &read) == STATUS_OK && read == value &&
           AParcel_getDataPosition(parcel.get()) == static_cast<int32_t>(hex.size() / 2);
}

}  // namespace zarvo::host::aidl
