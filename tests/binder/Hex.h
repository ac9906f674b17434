#pragma once

#include <android/binder_auto_utils.h>

#include <string>
#include <string_view>
#include <vector>

namespace tests {

/** Bytes of lower-case hexadecimal text, spaces allowed. */
inline std::vector<uint8_t> Bytes(std::string_view hex) {
    std::vector<uint8_t> bytes;
    unsigned value = 1;
    for (const char digit : hex) {
        if (digit == ' ') continue;
        value = value << 4 | static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
        if (value < 0x100) continue;
        bytes.push_back(static_cast<uint8_t>(value));
        value = 1;
    }
    return bytes;
}

/** A parcel with these bytes. */
inline ndk::ScopedAParcel ParcelOf(std::string_view hex) {
    ndk::ScopedAParcel parcel(AParcel_create());
    const auto bytes = Bytes(hex);
    AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size());
    return parcel;
}

/** All bytes of a parcel, without spaces. */
inline std::string Hex(const AParcel* parcel) {
    const int32_t position = AParcel_getDataPosition(parcel);
    AParcel_setDataPosition(parcel, 0);
    std::vector<uint8_t> bytes(static_cast<size_t>(AParcel_getDataSize(parcel)));
    AParcel_setDataPosition(parcel, position);
    if (AParcel_marshal(parcel, bytes.data(), 0, bytes.size()) != STATUS_OK) return "no bytes";
    std::string hex;
    for (const uint8_t byte : bytes) {
        hex += "0123456789abcdef"[byte >> 4];
        hex += "0123456789abcdef"[byte & 15];
    }
    return hex;
}

}  // namespace tests
