#include <aidl/vendor/zarvo/hardware/camera/aon/AONCallBackInfo.h>
#include <aidl/vendor/zarvo/hardware/camera/aon/BnAONService.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/binder/Hex.h"

namespace zarvo::host::aidl {
namespace {

using namespace ::aidl::vendor::zarvo::hardware::camera::aon;
using ::tests::ExpectBytes;
using ::tests::ParcelOf;
using Tag = AONResultValue::Tag;

TEST(PackageBytes, ResultsAndTheirPadding) {
    ExpectBytes(AONCallBackInfo(), "010000000c0000000000000000000000");
    ExpectBytes(AONCallBackInfo{1, {{2, std::vector<uint8_t>{1, 2, 3}}}},
                "010000002800000001000000010000000100000018000000020000000100000001000000"
                "0300000001020300");
    ExpectBytes(AONCallBackInfo{1, {{5, std::string("face")}}},
                "010000003000000001000000010000000100000020000000050000000100000004000000"
                "04000000660061006300650000000000");
    ExpectBytes(AONCallBackInfo{1, {{10, false}}},
                "0100000024000000010000000100000001000000140000000a000000010000000900000000000000");
    // Without a choice it is the first alternative; a union has no size of its own.
    ExpectBytes(AONResultValue(), "010000000000000000000000");
    ExpectBytes(AONResult(), "010000001400000000000000010000000000000000000000");
}

template <typename T>
void ExpectOddRead(const char* hex, binder_status_t status, int32_t position, const T& expected) {
    const ndk::ScopedAParcel parcel = ParcelOf(hex);
    T read{};
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &read), status) << hex;
    EXPECT_EQ(AParcel_getDataPosition(parcel.get()), position) << hex;
    EXPECT_EQ(read, expected) << hex;
}

TEST(PackageBytes, OddParcelablesAreReadUpToTheirSize) {
    using State = AONSensorStateInfo;
    ExpectOddRead("02000000080000000900000008000000", STATUS_OK, 12, State{9, 0});
    ExpectOddRead("070000000c0000000900000008000000", STATUS_OK, 16, State{9, 8});
    ExpectOddRead("00000000", STATUS_UNEXPECTED_NULL, 4, State{});
    ExpectOddRead("0100000003000000", STATUS_BAD_VALUE, 8, State{});
    ExpectOddRead("0100000004000000", STATUS_OK, 8, State{});
    ExpectOddRead("010000000800000009000000", STATUS_OK, 12, State{9, 0});
    ExpectOddRead("0100000010000000090000000800000007000000ffffffff", STATUS_OK, 20, State{9, 8});
    ExpectOddRead("01000000640000000900000008000000", STATUS_OK, 104, State{9, 8});
    ExpectOddRead("010000000c00000009000000", STATUS_NOT_ENOUGH_DATA, 12, State{9, 0});
    ExpectOddRead("01000000fcffffff09000000", STATUS_BAD_VALUE, 8, State{});
    ExpectOddRead("01000000ffffff7f0900000008000000", STATUS_BAD_VALUE, 8, State{});
    ExpectOddRead("010000000a0000000900000008000000", STATUS_OK, 14, State{9, 8});
    ExpectOddRead("0200000008000000070000000a000000", STATUS_OK, 12, AONResult{7, {}});
}

TEST(PackageBytes, OddUnionsAreRefused) {
    const AONResultValue none;
    ExpectOddRead("010000000a00000000000000", STATUS_BAD_VALUE, 8, none);
    ExpectOddRead("01000000ffffffff", STATUS_BAD_VALUE, 8, none);
    ExpectOddRead("0100000002000000", STATUS_NOT_ENOUGH_DATA, 8, none);
    // An unknown alternative deep inside fails the whole record.
    AONCallBackInfo info;
    const ndk::ScopedAParcel parcel = ParcelOf(
            "0100000024000000010000000100000001000000140000000300000001000000"
            "0a0000002a000000");
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &info), STATUS_BAD_VALUE);
}

TEST(PackageBytes, OverlappingRecordsDoNotMultiplyTheirBytes) {
    // Every result ends, by its size, before its own array, in which the next one begins. Its
    // words: presence, which is the count of the array before it; size; key; presence; tag.
    constexpr int32_t kResults = 5000;
    constexpr int32_t kArrayBytes = kResults * 10;
    std::vector<int32_t> words{1, 12 + kResults * 20, 1, kResults};
    for (int32_t i = 0; i < kResults; ++i)
        words.insert(words.end(), {kArrayBytes, 16, 2, 1, 1});
    words.resize(words.size() + kArrayBytes / 4 + 1);
    const ndk::ScopedAParcel parcel(AParcel_create());
    for (const int32_t word : words)
        AParcel_writeInt32(parcel.get(), word);
    AParcel_setDataPosition(parcel.get(), 0);
    AONCallBackInfo info;
    EXPECT_EQ(ndk::AParcel_readData(parcel.get(), &info), STATUS_NO_MEMORY);
    size_t held = 0;
    for (const AONResult& result : info.results) {
        if (result.value.getTag() == Tag::byteArray)
            held += result.value.get<Tag::byteArray>().size();
    }
    EXPECT_GT(held, 0u);
    EXPECT_LT(held, 5 * 4 * words.size());
    // Reading again from the start is another reading.
    AParcel_setDataPosition(parcel.get(), 0);
    int32_t presence = 0;
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &presence), STATUS_OK);
}

}  // namespace
}  // namespace zarvo::host::aidl
