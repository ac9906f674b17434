#include <android/binder_parcel_utils.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tests/binder/Hex.h"

namespace tests {
namespace {

using ndk::AParcel_readNullableData;
using ndk::ScopedAParcel;
using ndk::ScopedAStatus;
using ndk::SpAIBinder;

enum class Level : int8_t { kLow = -1, kHigh = 1 };

struct Point {
    int32_t x = 0;

    binder_status_t writeToParcel(AParcel* parcel) const { return AParcel_writeInt32(parcel, x); }
    binder_status_t readFromParcel(const AParcel* parcel) { return AParcel_readInt32(parcel, &x); }
    bool operator==(const Point&) const = default;
};

using Object = SpAIBinder;
using Text = std::string;
using MaybeText = std::optional<Text>;
using Bytes8 = std::vector<uint8_t>;
using Ints = std::vector<int32_t>;
using Doubles = std::vector<double>;
using Bools = std::vector<bool>;
using Chars = std::vector<char16_t>;
using Texts = std::vector<Text>;
using MaybeTexts = std::optional<std::vector<MaybeText>>;
using Points = std::vector<Point>;
using MaybePoints = std::optional<std::vector<std::optional<Point>>>;

TEST(ParcelBytes, ValuesHaveTheirBytes) {
    ExpectBytes<int32_t>(1, "01000000");
    ExpectBytes<int64_t>(0x1122334455667788, "8877665544332211");
    ExpectBytes<int8_t>(-2, "feffffff");
    ExpectBytes<uint8_t>(254, "feffffff");
    ExpectBytes(Level::kLow, "ffffffff");
    ExpectBytes(true, "01000000");
    ExpectBytes(false, "00000000");
    ExpectBytes(u'A', "41000000");
    ExpectBytes(1.5F, "0000c03f");
    ExpectBytes(1.5, "000000000000f83f");
    ExpectBytes(Point{3}, "0100000003000000");
    ExpectBytes(std::optional<Point>(), "00000000");
    ExpectBytes(std::unique_ptr<Point>(), "00000000");
    ExpectBytes(SpAIBinder(), "0000000000000000");
    // A long value comes after a short one without a gap.
    const ScopedAParcel parcel(AParcel_create());
    AParcel_writeInt32(parcel.get(), 1);
    AParcel_writeInt64(parcel.get(), 2);
    EXPECT_EQ(Hex(parcel.get()), "010000000200000000000000");
}

TEST(ParcelBytes, StringsHaveTheirBytes) {
    ExpectBytes(Text(), "0000000000000000");
    ExpectBytes(Text("a"), "0100000061000000");
    ExpectBytes(Text("ab"), "020000006100620000000000");
    ExpectBytes(Text("\xc3\xa9"), "01000000e9000000");
    ExpectBytes(Text("\xe2\x82\xac"), "01000000ac200000");
    ExpectBytes(Text("\xf0\x9f\x98\x80"), "020000003dd800de00000000");
    ExpectBytes(Text("\xed\xa0\x80"), "0100000000d80000");
    ExpectBytes(Text("a\0\xc3\xa9", 4), "0300000061000000e9000000");
    ExpectBytes(MaybeText(), "ffffffff");
}

TEST(ParcelBytes, SequencesHaveTheirBytes) {
    ExpectBytes(Bytes8(), "00000000");
    ExpectBytes(Bytes8{1, 2, 3}, "0300000001020300");
    ExpectBytes(std::vector<int8_t>{-1, 2, 3, 4, 5}, "05000000ff02030405000000");
    ExpectBytes(std::vector<Level>{Level::kLow, Level::kHigh}, "02000000ff010000");
    ExpectBytes(Ints{1, -1}, "0200000001000000ffffffff");
    ExpectBytes(std::vector<int64_t>{-2}, "01000000feffffffffffffff");
    ExpectBytes(std::vector<float>{1.5F, -2}, "020000000000c03f000000c0");
    ExpectBytes(Doubles{0.5, -2}, "02000000000000000000e03f00000000000000c0");
    ExpectBytes(Bools{true, false, true}, "03000000010000000000000001000000");
    ExpectBytes(Chars{u'A', u'\xffff'}, "0200000041000000ffff0000");
    ExpectBytes(Texts{"", "abc"}, "020000000000000000000000030000006100620063000000");
    ExpectBytes(Points{{1}, {2}}, "0200000001000000010000000100000002000000");
    ExpectBytes(std::array<std::array<int32_t, 2>, 2>{{{1, 2}, {3, 4}}},
                "02000000020000000100000002000000020000000300000004000000");
    ExpectBytes(std::optional<Bools>(), "ffffffff");
    ExpectBytes(std::optional<Bytes8>(), "ffffffff");
    ExpectBytes(std::optional<Ints>(), "ffffffff");
    ExpectBytes(std::make_optional<Ints>(), "00000000");
    ExpectBytes(MaybeTexts(), "ffffffff");
    ExpectBytes(MaybeTexts({"a", std::nullopt}), "020000000100000061000000ffffffff");
    ExpectBytes(MaybePoints(), "ffffffff");
    ExpectBytes(MaybePoints({std::nullopt, Point{1}}), "02000000000000000100000001000000");
}

TEST(ParcelBytes, ImpossibleValuesLeaveNone) {
    const ScopedAParcel parcel(AParcel_create());
    for (const Text text : {"\xff", "\xc3", "\xc0\x80", "\xf4\x90\x80\x80"})
        EXPECT_EQ(ndk::AParcel_writeString(parcel.get(), text), STATUS_BAD_VALUE) << text;
    EXPECT_EQ(AParcel_writeString(parcel.get(), nullptr, 0), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_writeString(parcel.get(), "a", -2), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_writeByteArray(parcel.get(), nullptr, 1), STATUS_BAD_VALUE);
    EXPECT_EQ(ndk::AParcel_writeData(parcel.get(), SpAIBinder()), STATUS_UNEXPECTED_NULL);
    EXPECT_EQ(Hex(parcel.get()), "");
}

template <typename T>
binder_status_t Read(const AParcel* parcel) {
    T value{};
    return AParcel_readNullableData(parcel, &value);
}

binder_status_t ReadRequiredObject(const AParcel* parcel) {
    SpAIBinder value;
    return ndk::AParcel_readData(parcel, &value);
}

binder_status_t Outcome(const AParcel* parcel) {
    ScopedAStatus outcome;
    const binder_status_t status = AParcel_readStatusHeader(parcel, outcome.getR());
    EXPECT_EQ(outcome.get() != nullptr, status == STATUS_OK);
    return status;
}

constexpr binder_status_t kBadValue = STATUS_BAD_VALUE;
constexpr binder_status_t kBadType = STATUS_BAD_TYPE;
constexpr binder_status_t kNull = STATUS_UNEXPECTED_NULL;
constexpr binder_status_t kUnknown = STATUS_UNKNOWN_ERROR;
constexpr binder_status_t kNoMemory = STATUS_NO_MEMORY;
constexpr binder_status_t kTooShort = STATUS_NOT_ENOUGH_DATA;

const struct {
    const char* what;
    binder_status_t (*read)(const AParcel* parcel);
    const char* hex;
    binder_status_t status;
    int32_t position;
} kReads[] = {
        {"nothing", Read<int32_t>, "", kTooShort, 0},
        {"int32 of three bytes, padded", Read<int32_t>, "010203", STATUS_OK, 4},
        {"half an int64", Read<int64_t>, "01000000", kTooShort, 0},
        {"outcome without number", Outcome, "f8ffffff000000000000000000000000", kTooShort, 16},
        {"reply header longer than all", Outcome, "80ffffff0c00000000000000", kUnknown, 8},
        {"trace of size -1", Outcome, "fdffffff0000000000000000ffffffff01020304", kUnknown, 16},
        {"null string", Read<Text>, "ffffffff", kNull, 4},
        {"string cut short", Read<Text>, "0500000061006200", kNull, 4},
        {"string of negative length", Read<Text>, "feffffff61006200", kNull, 4},
        {"string of greatest length", Read<Text>, "ffffff7f61006200", kNull, 4},
        {"null int32s", Read<Ints>, "ffffffff", kNull, 4},
        {"int32s longer than their bytes", Read<Ints>, "0200000001000000", kNoMemory, 4},
        {"most doubles", Read<Doubles>, "ffffff7f01000000", kNoMemory, 4},
        {"bytes without padding", Read<Bytes8>, "03000000010203", STATUS_OK, 8},
        {"bools cut short", Read<Bools>, "0200000001000000", kTooShort, 8},
        {"strings with a null one", Read<Texts>, "01000000ffffffff", kNull, 8},
        {"null record", Read<Point>, "00000000", kNull, 4},
        {"null records", Read<Points>, "ffffffff", kNoMemory, 4},
        {"more records than bytes", Read<Points>, "0500000001000000", kNoMemory, 4},
        {"null object where none may be", ReadRequiredObject, "0000000000000000", kNull, 8},
        {"null object with a stability", Read<Object>, "000000003f000000", kBadType, 8},
        {"object of no stability", Read<Object>, "01000000010000000000000000000000", kBadType, 16},
        {"object nobody put in", Read<Object>, "0100000001000000000000003f000000", kBadValue, 16},
        {"object cut short", Read<Object>, "0100000001000000", kTooShort, 4},
};

TEST(ParcelBytes, OddOnesGiveTheirErrorAndPosition) {
    for (const auto& odd : kReads) {
        SCOPED_TRACE(odd.what);
        const ScopedAParcel parcel = ParcelOf(odd.hex);
        EXPECT_EQ(odd.read(parcel.get()), odd.status);
        EXPECT_EQ(AParcel_getDataPosition(parcel.get()), odd.position);
    }
}

TEST(ParcelBytes, ElementsAreMadeOnlyAsTheyArrive) {
    // The first of very many is null.
    const ScopedAParcel parcel = ParcelOf("409c0000" + Text(80000, '0'));
    Points points(3);
    EXPECT_EQ(ndk::AParcel_readVector(parcel.get(), &points), STATUS_UNEXPECTED_NULL);
    EXPECT_LT(points.capacity(), 10u);
}

TEST(ParcelBytes, OutVectorsAreResizedWithinLimits) {
    Points points(1);
    const auto resize = [](const char* length, auto* vector) {
        return ndk::AParcel_resizeVector(ParcelOf(length).get(), vector);
    };
    EXPECT_EQ(resize("41420f00", &points), STATUS_NO_MEMORY);
    EXPECT_EQ(resize("ffffffff", &points), STATUS_UNEXPECTED_NULL);
    for (const char* const length : {"40420f00", "00000000", "02000000"})
        EXPECT_EQ(resize(length, &points), STATUS_OK);
    EXPECT_EQ(points, Points(2));
    std::optional<Points> nullable(points);
    EXPECT_EQ(resize("ffffffff", &nullable), STATUS_OK);
    EXPECT_FALSE(nullable.has_value());
}

TEST(ParcelBytes, ReadingPastTheEndOrOffAWordIsNoDanger) {
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

}  // namespace
}  // namespace tests
