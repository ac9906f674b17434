#include <android/binder_parcel_utils.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/binder/Hex.h"

namespace {

using ndk::AParcel_writeData;
using ndk::ScopedAParcel;
using ndk::ScopedAStatus;
using tests::Hex;

struct WriteCase {
    const char* what;
    binder_status_t (*write)(AParcel* parcel);
    const char* hex;
    binder_status_t status = STATUS_OK;
};

template <size_t kLength>
binder_status_t WriteText(AParcel* parcel, const char (&text)[kLength]) {
    return AParcel_writeString(parcel, text, kLength - 1);
}

template <typename T>
binder_status_t WriteVector(AParcel* parcel, std::vector<T> values) {
    return AParcel_writeData(parcel, values);
}

const WriteCase kWrites[] = {
        {"int32", [](AParcel* p) { return AParcel_writeInt32(p, 1); }, "01000000"},
        {"int64 after int32",
         [](AParcel* p) {
             AParcel_writeInt32(p, 1);
             return AParcel_writeInt64(p, 0x1122334455667788);
         },
         "010000008877665544332211"},
        {"byte", [](AParcel* p) { return AParcel_writeByte(p, -2); }, "feffffff"},
        {"bool", [](AParcel* p) { return AParcel_writeBool(p, true); }, "01000000"},
        {"char", [](AParcel* p) { return AParcel_writeChar(p, u'A'); }, "41000000"},
        {"float", [](AParcel* p) { return AParcel_writeFloat(p, 1.5F); }, "0000c03f"},
        {"double", [](AParcel* p) { return AParcel_writeDouble(p, 1.5); }, "000000000000f83f"},

        {"empty string", [](AParcel* p) { return WriteText(p, ""); }, "0000000000000000"},
        {"one letter", [](AParcel* p) { return WriteText(p, "a"); }, "0100000061000000"},
        {"two letters", [](AParcel* p) { return WriteText(p, "ab"); }, "020000006100620000000000"},
        {"three letters", [](AParcel* p) { return WriteText(p, "abc"); },
         "030000006100620063000000"},
        {"two bytes, one unit", [](AParcel* p) { return WriteText(p, "\xc3\xa9"); },
         "01000000e9000000"},
        {"three bytes, one unit", [](AParcel* p) { return WriteText(p, "\xe2\x82\xac"); },
         "01000000ac200000"},
        {"four bytes, two units", [](AParcel* p) { return WriteText(p, "\xf0\x9f\x98\x80"); },
         "020000003dd800de00000000"},
        {"lone surrogate", [](AParcel* p) { return WriteText(p, "\xed\xa0\x80"); },
         "0100000000d80000"},
        {"NUL within", [](AParcel* p) { return WriteText(p, "a\0b"); }, "030000006100000062000000"},
        {"interface name",
         [](AParcel* p) { return WriteText(p, "vendor.zarvo.hardware.camera.aon.IAONService"); },
         "2c000000760065006e0064006f0072002e007a006100720076006f002e0068006100720064007700610072006"
         "5"
         "002e00630061006d006500720061002e0061006f006e002e00490041004f004e0053006500720076006900630"
         "0"
         "650000000000"},
        {"null string", [](AParcel* p) { return AParcel_writeString(p, nullptr, -1); }, "ffffffff"},
        {"null string with a length", [](AParcel* p) { return AParcel_writeString(p, nullptr, 0); },
         "", STATUS_BAD_VALUE},
        {"string of negative length", [](AParcel* p) { return AParcel_writeString(p, "a", -2); },
         "", STATUS_BAD_VALUE},
        {"no UTF-8", [](AParcel* p) { return WriteText(p, "\xff"); }, "", STATUS_BAD_VALUE},
        {"cut UTF-8", [](AParcel* p) { return WriteText(p, "\xc3"); }, "", STATUS_BAD_VALUE},
        {"overlong UTF-8", [](AParcel* p) { return WriteText(p, "\xc0\x80"); }, "",
         STATUS_BAD_VALUE},
        {"beyond Unicode", [](AParcel* p) { return WriteText(p, "\xf4\x90\x80\x80"); }, "",
         STATUS_BAD_VALUE},

        {"no bytes", [](AParcel* p) { return WriteVector<uint8_t>(p, {}); }, "00000000"},
        {"three bytes",
         [](AParcel* p) {
             return WriteVector<uint8_t>(p, {1, 2, 3});
         },
         "0300000001020300"},
        {"five bytes",
         [](AParcel* p) {
             return WriteVector<uint8_t>(p, {1, 2, 3, 4, 255});
         },
         "0500000001020304ff000000"},
        {"null bytes", [](AParcel* p) { return AParcel_writeByteArray(p, nullptr, -1); },
         "ffffffff"},
        {"array without values", [](AParcel* p) { return AParcel_writeByteArray(p, nullptr, 1); },
         "", STATUS_BAD_VALUE},
        {"int32s",
         [](AParcel* p) {
             return WriteVector<int32_t>(p, {1, -1});
         },
         "0200000001000000ffffffff"},
        {"int64s", [](AParcel* p) { return WriteVector<int64_t>(p, {-2}); },
         "01000000feffffffffffffff"},
        {"floats",
         [](AParcel* p) {
             return WriteVector<float>(p, {1.5F, -2});
         },
         "020000000000c03f000000c0"},
        {"bools",
         [](AParcel* p) {
             return WriteVector<bool>(p, {true, false, true});
         },
         "03000000010000000000000001000000"},
        {"chars",
         [](AParcel* p) {
             return WriteVector<char16_t>(p, {u'A', u'\xffff'});
         },
         "0200000041000000ffff0000"},
        {"strings",
         [](AParcel* p) {
             return WriteVector<std::string>(p, {"a", ""});
         },
         "0200000001000000610000000000000000000000"},

        {"null object", [](AParcel* p) { return AParcel_writeStrongBinder(p, nullptr); },
         "0000000000000000"},
};

TEST(ParcelWrite, ValuesHaveTheirBytes) {
    for (const WriteCase& write : kWrites) {
        SCOPED_TRACE(write.what);
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(write.write(parcel.get()), write.status);
        EXPECT_EQ(Hex(parcel.get()), write.hex);
    }
}

struct HeaderCase {
    AStatus* status;
    const char* hex;
    binder_status_t written = STATUS_OK;
};

TEST(ParcelWrite, OutcomesHaveTheirBytes) {
    const HeaderCase cases[] = {
            {AStatus_newOk(), "00000000"},
            {AStatus_fromServiceSpecificError(5), "f8ffffff00000000000000000000000005000000"},
            {AStatus_fromServiceSpecificError(0), "f8ffffff00000000000000000000000000000000"},
            {AStatus_fromServiceSpecificErrorWithMessage(5, "busy"),
             "f8ffffff0400000062007500730079000000000000000000"
             "05000000"},
            {AStatus_fromExceptionCode(EX_SECURITY), "ffffffff000000000000000000000000"},
            {AStatus_fromExceptionCode(EX_UNSUPPORTED_OPERATION),
             "f9ffffff000000000000000000000000"},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "bad"),
             "fdffffff03000000620061006400000000000000"},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "\xff"),
             "fdffffff000000000000000000000000"},
            {AStatus_fromExceptionCode(EX_PARCELABLE), "f7ffffff00000000000000000000000000000000"},
            {AStatus_fromExceptionCode(EX_TRANSACTION_FAILED), "", STATUS_FAILED_TRANSACTION},
            {AStatus_fromStatus(STATUS_DEAD_OBJECT), "", STATUS_DEAD_OBJECT},
            {AStatus_fromExceptionCode(-77), "", STATUS_FAILED_TRANSACTION},
    };
    for (const HeaderCase& header : cases) {
        const ScopedAStatus status(header.status);
        SCOPED_TRACE(status.getDescription());
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), header.written);
        EXPECT_EQ(Hex(parcel.get()), header.hex);
    }
}

TEST(ParcelWrite, WritingInTheMiddleOverwritesAndBeyondTheEndFillsWithZeros) {
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
    EXPECT_EQ(AParcel_reset(parcel.get()), STATUS_OK);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 0);
}

TEST(ParcelWrite, ImpossiblyLongParcelIsRefused) {
    const ScopedAParcel parcel(AParcel_create());
    AParcel_setDataPosition(parcel.get(), INT32_MAX);
    EXPECT_EQ(AParcel_writeInt32(parcel.get(), 1), STATUS_NO_MEMORY);
    AParcel_setDataPosition(parcel.get(), 0);
    EXPECT_EQ(AParcel_getDataSize(parcel.get()), 0);
}

TEST(ParcelWrite, AppendingTakesAWholeStretch) {
    const ScopedAParcel from = tests::ParcelOf("01000000 02000000 03000000");
    const ScopedAParcel to = tests::ParcelOf("0a000000");
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
