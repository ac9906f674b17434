#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_parcel_utils.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace tests {

/** The bytes of a hexadecimal text, spaces allowed. */
inline std::vector<uint8_t> BytesOf(std::string hex) {
    std::erase(hex, ' ');
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < hex.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

/** A parcel with these bytes. */
inline ndk::ScopedAParcel ParcelOf(const std::string& hex) {
    const std::vector<uint8_t> bytes = BytesOf(hex);
    ndk::ScopedAParcel parcel(AParcel_create());
    AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size());
    return parcel;
}

/** The bytes as text, without spaces. */
inline std::string Hex(std::span<const uint8_t> bytes) {
    std::string hex;
    for (const uint8_t byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        hex += digits;
    }
    return hex;
}

/** All bytes of a parcel. */
inline std::string Hex(const AParcel* parcel) {
    std::vector<uint8_t> bytes(static_cast<size_t>(AParcel_getDataSize(parcel)));
    if (AParcel_marshal(parcel, bytes.data(), 0, bytes.size()) != STATUS_OK) return "no bytes";
    return Hex(bytes);
}

/** Makes these bytes of the value, and the value of all of them again. */
template <typename T>
void ExpectBytes(const T& value, const std::string& hex) {
    const ndk::ScopedAParcel parcel(AParcel_create());
    EXPECT_EQ(ndk::AParcel_writeNullableData(parcel.get(), value), STATUS_OK);
    EXPECT_EQ(Hex(parcel.get()), hex);
    AParcel_setDataPosition(parcel.get(), 0);
    T read{};
    EXPECT_EQ(ndk::AParcel_readNullableData(parcel.get(), &read), STATUS_OK) << hex;
    EXPECT_TRUE(read == value) << hex;
    EXPECT_EQ(AParcel_getDataPosition(parcel.get()), AParcel_getDataSize(parcel.get())) << hex;
}

}  // namespace tests
