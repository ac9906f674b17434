#include <gtest/gtest.h>

#include "tests/binder/Hex.h"

namespace tests {
namespace {

using ndk::ScopedAParcel;
using ndk::ScopedAStatus;

TEST(Status, ValuesAreThoseOfTheWire) {
    const std::vector<int32_t> values = {
            STATUS_UNEXPECTED_NULL, STATUS_FAILED_TRANSACTION,  STATUS_NO_MEMORY,
            STATUS_DEAD_OBJECT,     STATUS_INVALID_OPERATION,   STATUS_NOT_ENOUGH_DATA,
            STATUS_BAD_INDEX,       STATUS_UNKNOWN_TRANSACTION,
    };
    EXPECT_EQ(values,
              (std::vector<int32_t>{-2147483640, -2147483646, -12, -32, -38, -61, -75, -74}));
}

struct MadeCase {
    AStatus* made;
    const char* description;
    /** Nothing for an outcome that no header can tell. */
    const char* hex;
    binder_exception_t exception = EX_NONE;
    int32_t serviceSpecific = 0;
    const char* message = "";
    binder_status_t status = STATUS_OK;
};

TEST(Status, TellsWhatItWasMadeFromAlsoInAParcel) {
    const MadeCase cases[] = {
            {AStatus_newOk(), "No error", "00000000"},
            {AStatus_fromExceptionCode(EX_NONE), "No error", "00000000"},
            {AStatus_fromStatus(STATUS_OK), "No error", "00000000"},
            {AStatus_fromServiceSpecificError(5), "Status(-8, EX_SERVICE_SPECIFIC): '5: '",
             "f8ffffff00000000000000000000000005000000", EX_SERVICE_SPECIFIC, 5},
            {AStatus_fromServiceSpecificErrorWithMessage(5, "busy"),
             "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'",
             "f8ffffff040000006200750073007900000000000000000005000000", EX_SERVICE_SPECIFIC, 5,
             "busy"},
            {AStatus_fromServiceSpecificError(0), "Status(-8, EX_SERVICE_SPECIFIC): '0: '",
             "f8ffffff00000000000000000000000000000000", EX_SERVICE_SPECIFIC},
            {AStatus_fromExceptionCode(EX_SECURITY), "Status(-1, EX_SECURITY): ''",
             "ffffffff000000000000000000000000", EX_SECURITY},
            {AStatus_fromExceptionCode(EX_UNSUPPORTED_OPERATION),
             "Status(-7, EX_UNSUPPORTED_OPERATION): ''", "f9ffffff000000000000000000000000",
             EX_UNSUPPORTED_OPERATION},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "bad"),
             "Status(-3, EX_ILLEGAL_ARGUMENT): 'bad'", "fdffffff03000000620061006400000000000000",
             EX_ILLEGAL_ARGUMENT, 0, "bad"},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "\xff"),
             "Status(-3, EX_ILLEGAL_ARGUMENT): '\xff'", "fdffffff000000000000000000000000",
             EX_ILLEGAL_ARGUMENT, 0, "\xff"},
            {AStatus_fromExceptionCode(EX_PARCELABLE), "Status(-9, EX_PARCELABLE): ''",
             "f7ffffff00000000000000000000000000000000", EX_PARCELABLE},
            {AStatus_fromStatus(STATUS_DEAD_OBJECT),
             "Status(-129, EX_TRANSACTION_FAILED): 'DEAD_OBJECT: '", "", EX_TRANSACTION_FAILED, 0,
             "", STATUS_DEAD_OBJECT},
            {AStatus_fromStatus(12345), "Status(-129, EX_TRANSACTION_FAILED): 'UNKNOWN_ERROR: '",
             "", EX_TRANSACTION_FAILED, 0, "", STATUS_UNKNOWN_ERROR},
            {AStatus_fromExceptionCode(-77),
             "Status(-129, EX_TRANSACTION_FAILED): 'FAILED_TRANSACTION: '", "",
             EX_TRANSACTION_FAILED, 0, "", STATUS_FAILED_TRANSACTION},
    };
    for (const MadeCase& expected : cases) {
        SCOPED_TRACE(expected.description);
        const ScopedAStatus status(expected.made);
        EXPECT_EQ(status.getDescription(), expected.description);
        EXPECT_EQ(status.isOk(), expected.exception == EX_NONE);
        EXPECT_EQ(status.getExceptionCode(), expected.exception);
        EXPECT_EQ(status.getServiceSpecificError(), expected.serviceSpecific);
        EXPECT_EQ(status.getStatus(), expected.status);
        EXPECT_STREQ(status.getMessage(), expected.message);
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), expected.status);
        EXPECT_EQ(Hex(parcel.get()), expected.hex);
    }
}

struct ReadCase {
    const char* hex;
    binder_status_t status;
    const char* description;
    binder_exception_t exception;
    int32_t position;
};

const ReadCase kOutcomes[] = {
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

TEST(Status, IsReadFromAParcelAsFarAsItMakesSense) {
    for (const ReadCase& outcome : kOutcomes) {
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
}  // namespace tests
