#include <android/binder_parcel.h>
#include <gtest/gtest.h>

#include "tests/binder/Hex.h"

namespace tests {
namespace {

using ndk::ScopedAParcel;

TEST(Parcel, ReadingPastTheEndOrOffAWordIsNoDanger) {
    const ScopedAParcel parcel = ParcelOf("01000000 02000000");
    int32_t value = 0;
    AParcel_setDataPosition(parcel.get(), 100);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 100);
    AParcel_setDataPosition(parcel.get(), 2);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_OK);
    EXPECT_EQ(value, 0x20000);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_NOT_ENOUGH_DATA);
    uint8_t bytes[8] = {};
    EXPECT_EQ(AParcel_marshal(parcel.get(), bytes, 4, 5), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_marshal(parcel.get(), bytes, SIZE_MAX, 2), STATUS_BAD_VALUE);
}

TEST(Parcel, WritingInTheMiddleOverwritesAndBeyondTheEndFillsWithZeros) {
    const ScopedAParcel parcel(AParcel_create());
    for (int32_t i = 1; i <= 3; ++i)
        AParcel_writeInt32(parcel.get(), i);
    EXPECT_EQ(AParcel_setDataPosition(parcel.get(), 4), STATUS_OK);
    AParcel_writeInt32(parcel.get(), 9);
    EXPECT_EQ(Hex(parcel.get()), "010000000900000003000000");
    EXPECT_EQ(AParcel_setDataPosition(parcel.get(), 16), STATUS_OK);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 16);
    AParcel_writeInt32(parcel.get(), 5);
    EXPECT_EQ(Hex(parcel.get()), "0100000009000000030000000000000005000000");
    EXPECT_EQ(AParcel_setDataPosition(parcel.get(), -1), STATUS_BAD_VALUE);
    AParcel_setDataPosition(parcel.get(), INT32_MAX);
    EXPECT_EQ(AParcel_writeInt32(parcel.get(), 1), STATUS_NO_MEMORY);
    AParcel_setDataPosition(parcel.get(), 0);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 20);
}

TEST(Parcel, AppendingTakesAWholeStretch) {
    const ScopedAParcel from = ParcelOf("01000000 02000000 03000000");
    const ScopedAParcel to = ParcelOf("0a000000");
    AParcel_setDataPosition(to.get(), 4);
    EXPECT_EQ(AParcel_appendFrom(from.get(), to.get(), 4, 8), STATUS_OK);
    EXPECT_EQ(Hex(to.get()), "0a0000000200000003000000");
    EXPECT_EQ(AParcel_appendFrom(to.get(), to.get(), 0, 12), STATUS_OK);
    EXPECT_EQ(Hex(to.get()), "0a00000002000000030000000a0000000200000003000000");
    EXPECT_EQ(AParcel_appendFrom(from.get(), to.get(), 4, 12), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_appendFrom(from.get(), to.get(), -4, 4), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_appendFrom(from.get(), to.get(), 2, 4), STATUS_BAD_VALUE);
}

}  // namespace
}  // namespace tests
