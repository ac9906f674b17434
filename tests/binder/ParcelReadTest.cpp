#include <android/binder_parcel_utils.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/binder/Hex.h"

namespace {

using ndk::AParcel_readData;
using ndk::AParcel_readNullableData;
using ndk::ScopedAParcel;
using ndk::ScopedAStatus;
using ndk::SpAIBinder;
using tests::ParcelOf;

struct ReadCase {
    const char* what;
    binder_status_t (*read)(const AParcel* parcel);
    const char* hex;
    binder_status_t status;
    int32_t position;
};

template <typename T>
binder_status_t Read(const AParcel* parcel) {
    T value{};
    return AParcel_readData(parcel, &value);
}

template <typename T>
binder_status_t ReadNullable(const AParcel* parcel) {
    T value{};
    return AParcel_readNullableData(parcel, &value);
}

binder_status_t ReadObject(const AParcel* parcel) {
    SpAIBinder binder;
    return AParcel_readStrongBinder(parcel, binder.getR());
}

const ReadCase kReads[] = {
        {"nothing", Read<int32_t>, "", STATUS_NOT_ENOUGH_DATA, 0},
        {"int32 of three bytes, padded", Read<int32_t>, "010203", STATUS_OK, 4},
        {"half an int64", Read<int64_t>, "01000000", STATUS_NOT_ENOUGH_DATA, 0},

        {"null string", Read<std::string>, "ffffffff", STATUS_UNEXPECTED_NULL, 4},
        {"null string where allowed", ReadNullable<std::optional<std::string>>, "ffffffff",
         STATUS_OK, 4},
        {"string without its NUL", Read<std::string>, "01000000 61006200", STATUS_UNEXPECTED_NULL,
         8},
        {"string cut short", Read<std::string>, "05000000 61006200", STATUS_UNEXPECTED_NULL, 4},
        {"string of negative length", Read<std::string>, "feffffff 61006200",
         STATUS_UNEXPECTED_NULL, 4},
        {"string of greatest length", Read<std::string>, "ffffff7f 61006200",
         STATUS_UNEXPECTED_NULL, 4},
        {"string with a lone surrogate", Read<std::string>, "01000000 00d80000", STATUS_OK, 8},
        {"string with its count cut", Read<std::string>, "", STATUS_NOT_ENOUGH_DATA, 0},

        {"null int32s", Read<std::vector<int32_t>>, "ffffffff", STATUS_UNEXPECTED_NULL, 4},
        {"less than null int32s", Read<std::vector<int32_t>>, "feffffff", STATUS_BAD_VALUE, 4},
        {"too many int32s", Read<std::vector<int32_t>>, "64000000 01000000", STATUS_NO_MEMORY, 4},
        {"int32s longer than their bytes", Read<std::vector<int32_t>>, "02000000 01000000",
         STATUS_NO_MEMORY, 4},
        {"most int32s", Read<std::vector<int32_t>>, "ffffff7f 01000000", STATUS_NO_MEMORY, 4},
        {"most doubles", Read<std::vector<double>>, "ffffff7f 01000000", STATUS_NO_MEMORY, 4},
        {"null bytes", Read<std::vector<uint8_t>>, "ffffffff", STATUS_UNEXPECTED_NULL, 4},
        {"bytes without padding", Read<std::vector<uint8_t>>, "03000000 010203", STATUS_OK, 8},
        {"null bools", Read<std::vector<bool>>, "ffffffff", STATUS_UNEXPECTED_NULL, 4},
        {"most bools", Read<std::vector<bool>>, "ffffff7f 01000000", STATUS_NO_MEMORY, 4},
        {"bools cut short", Read<std::vector<bool>>, "02000000 01000000", STATUS_NOT_ENOUGH_DATA,
         8},
        {"chars cut short", Read<std::vector<char16_t>>, "02000000 41000000",
         STATUS_NOT_ENOUGH_DATA, 8},
        {"null strings", Read<std::vector<std::string>>, "ffffffff", STATUS_UNEXPECTED_NULL, 4},
        {"most strings", Read<std::vector<std::string>>, "ffffff7f 01000000", STATUS_NO_MEMORY, 4},
        {"strings with a null one", Read<std::vector<std::string>>, "01000000 ffffffff",
         STATUS_UNEXPECTED_NULL, 8},

        {"null object", ReadObject, "00000000 00000000", STATUS_OK, 8},
        {"null object with a stability", ReadObject, "00000000 3f000000", STATUS_BAD_TYPE, 8},
        {"null object told by one bit", ReadObject, "02000000 00000000", STATUS_OK, 8},
        {"object of no stability", ReadObject, "01000000 0100000000000000 00000000",
         STATUS_BAD_TYPE, 16},
        {"object of odd stability", ReadObject, "01000000 0100000000000000 07000000",
         STATUS_BAD_TYPE, 16},
        {"object nobody put there", ReadObject, "01000000 0100000000000000 3f000000",
         STATUS_BAD_VALUE, 16},
        {"object cut short", ReadObject, "01000000 01000000", STATUS_NOT_ENOUGH_DATA, 4},
};

TEST(ParcelRead, OddBytesGiveTheirErrorAndPosition) {
    for (const ReadCase& read : kReads) {
        SCOPED_TRACE(read.what);
        const ScopedAParcel parcel = ParcelOf(read.hex);
        EXPECT_EQ(read.read(parcel.get()), read.status);
        EXPECT_EQ(AParcel_getDataPosition(parcel.get()), read.position);
    }
}

template <typename T>
T Value(const char* hex) {
    T value{};
    EXPECT_EQ(AParcel_readData(ParcelOf(hex).get(), &value), STATUS_OK);
    return value;
}

TEST(ParcelRead, ValuesComeBack) {
    EXPECT_EQ(Value<int64_t>("8877665544332211"), 0x1122334455667788);
    EXPECT_EQ(Value<int8_t>("ff010000"), -1);
    EXPECT_EQ(Value<bool>("02000000"), true);
    EXPECT_EQ(Value<char16_t>("4100ffff"), u'A');
    EXPECT_EQ(Value<double>("000000000000f83f"), 1.5);
    EXPECT_EQ(Value<std::string>("020000003dd800de00000000"), "\xf0\x9f\x98\x80");
    EXPECT_EQ(Value<std::string>("02000000 00de3dd8 0000 0000"), "\xed\xb8\x80\xed\xa0\xbd");
    EXPECT_EQ(Value<std::string>("03000000 6100 0000 e900 0000"), std::string("a\0\xc3\xa9", 4));
    EXPECT_EQ(Value<std::vector<uint8_t>>("0500000001020304ff000000"),
              (std::vector<uint8_t>{1, 2, 3, 4, 255}));
    EXPECT_EQ(Value<std::vector<int64_t>>("01000000feffffffffffffff"), std::vector<int64_t>{-2});
    EXPECT_EQ(Value<std::vector<bool>>("020000000200000000000000"),
              (std::vector<bool>{true, false}));
    EXPECT_EQ(Value<std::vector<std::string>>("01000000 0100000061000000"),
              std::vector<std::string>{"a"});
}

TEST(ParcelRead, ReadingFromAPositionPastTheEndOrOffAWordIsNoDanger) {
    const ScopedAParcel parcel = ParcelOf("01000000 02000000");
    int32_t value = 0;
    AParcel_setDataPosition(parcel.get(), 100);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_NOT_ENOUGH_DATA);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 100);
    AParcel_setDataPosition(parcel.get(), 2);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_OK);
    EXPECT_EQ(value, 0x20000);
    EXPECT_EQ(AParcel_readInt32(parcel.get(), &value), STATUS_NOT_ENOUGH_DATA);
}

TEST(ParcelRead, MarshalGivesOnlyBytesThatAreThere) {
    const ScopedAParcel parcel = ParcelOf("01020304 05");
    uint8_t bytes[8] = {};
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 8);
    EXPECT_EQ(AParcel_marshal(parcel.get(), bytes, 4, 4), STATUS_OK);
    EXPECT_EQ(bytes[0], 5);
    EXPECT_EQ(AParcel_marshal(parcel.get(), bytes, 4, 5), STATUS_BAD_VALUE);
    EXPECT_EQ(AParcel_marshal(parcel.get(), bytes, SIZE_MAX, 2), STATUS_BAD_VALUE);
}

/** For the sanitizers: no bytes at all make a reader touch or allocate what is not there. */
TEST(ParcelRead, RandomBytesHarmNoReader) {
    binder_status_t (*const readers[])(const AParcel*) = {
            Read<int64_t>,
            Read<std::string>,
            ReadNullable<std::optional<std::string>>,
            Read<std::vector<uint8_t>>,
            Read<std::vector<double>>,
            Read<std::vector<bool>>,
            Read<std::vector<char16_t>>,
            Read<std::vector<std::string>>,
            ReadObject,
            [](const AParcel* parcel) {
                return AParcel_readStatusHeader(parcel, ScopedAStatus().getR());
            },
    };
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::vector<uint8_t> bytes(random() % 64);
        // Mostly small numbers and -1, so that lengths and counts often make sense.
        for (uint8_t& byte : bytes) {
            byte = static_cast<uint8_t>(random() % 4 != 0 ? 0 : random() % 16 - 2);
        }
        const ScopedAParcel parcel(AParcel_create());
        ASSERT_EQ(AParcel_unmarshal(parcel.get(), bytes.data(), bytes.size()), STATUS_OK);
        for (const auto reader : readers) {
            const auto start = static_cast<int32_t>(random() % (bytes.size() + 8));
            AParcel_setDataPosition(parcel.get(), start);
            while (reader(parcel.get()) == STATUS_OK) {
            }
        }
    }
}

struct OutcomeCase {
    const char* hex;
    binder_status_t status;
    const char* description;
    binder_exception_t exception;
    int32_t position;
};

const OutcomeCase kOutcomes[] = {
        {"00000000", STATUS_OK, "No error", EX_NONE, 4},
        {"80ffffff 08000000 00000000", STATUS_OK, "No error", EX_NONE, 12},
        {"80ffffff 0c000000 00000000", STATUS_UNKNOWN_ERROR, nullptr, 0, 8},
        {"80ffffff ffffffff 00000000", STATUS_UNKNOWN_ERROR, nullptr, 0, 8},
        {"b3ffffff 00000000 00000000 00000000", STATUS_OK, "Status(-77, -77): ''",
         EX_TRANSACTION_FAILED, 16},
        {"05000000 00000000 00000000 00000000", STATUS_OK, "Status(5, 5): ''",
         EX_TRANSACTION_FAILED, 16},
        {"7fffffff 00000000 00000000 00000000", STATUS_OK,
         "Status(-129, EX_TRANSACTION_FAILED): 'OK: '", EX_TRANSACTION_FAILED, 16},
        {"fdffffff ffffffff 00000000", STATUS_OK, "Status(-3, EX_ILLEGAL_ARGUMENT): ''",
         EX_ILLEGAL_ARGUMENT, 12},
        {"fdffffff 00000000 00000000 08000000 01020304", STATUS_OK,
         "Status(-3, EX_ILLEGAL_ARGUMENT): ''", EX_ILLEGAL_ARGUMENT, 20},
        {"fdffffff 00000000 00000000 0c000000 01020304", STATUS_UNKNOWN_ERROR, nullptr, 0, 16},
        {"fdffffff 00000000 00000000 ffffffff 01020304", STATUS_UNKNOWN_ERROR, nullptr, 0, 16},
        {"fdffffff 03000000 62006100 64000000 00000000", STATUS_OK,
         "Status(-3, EX_ILLEGAL_ARGUMENT): 'bad'", EX_ILLEGAL_ARGUMENT, 20},
        {"fdffffff", STATUS_NOT_ENOUGH_DATA, nullptr, 0, 4},
        {"f8ffffff 00000000 00000000 00000000", STATUS_NOT_ENOUGH_DATA, nullptr, 0, 16},
        {"f8ffffff 00000000 00000000 00000000 05000000", STATUS_OK,
         "Status(-8, EX_SERVICE_SPECIFIC): '5: '", EX_SERVICE_SPECIFIC, 20},
        {"f7ffffff 00000000 00000000 00000000 08000000 01020304", STATUS_OK,
         "Status(-9, EX_PARCELABLE): ''", EX_PARCELABLE, 24},
        {"f7ffffff 00000000 00000000 00000000 0c000000 01020304", STATUS_UNKNOWN_ERROR, nullptr, 0,
         20},
        {"", STATUS_NOT_ENOUGH_DATA, nullptr, 0, 0},
};

TEST(ParcelRead, OutcomesAreReadAsFarAsTheyMakeSense) {
    for (const OutcomeCase& outcome : kOutcomes) {
        SCOPED_TRACE(outcome.hex);
        const ScopedAParcel parcel = ParcelOf(outcome.hex);
        ScopedAStatus status;
        EXPECT_EQ(AParcel_readStatusHeader(parcel.get(), status.getR()), outcome.status);
        EXPECT_EQ(AParcel_getDataPosition(parcel.get()), outcome.position);
        ASSERT_EQ(status.get() == nullptr, outcome.description == nullptr);
        if (status.get() == nullptr) continue;
        EXPECT_EQ(status.getDescription(), outcome.description);
        EXPECT_EQ(status.getExceptionCode(), outcome.exception);
        EXPECT_EQ(status.getStatus(), STATUS_OK);
    }
}

}  // namespace
