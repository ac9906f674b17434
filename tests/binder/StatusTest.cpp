#include <gtest/gtest.h>

#include "tests/binder/Hex.h"

namespace tests {
namespace {

using ndk::ScopedAParcel;
using ndk::ScopedAStatus;

struct OutcomeCase {
    AStatus* made;
    const char* description;
    const char* hex;
    binder_exception_t exception = EX_NONE;
    int32_t serviceSpecific = 0;
    const char* message = "";
};

void ExpectOutcome(const ScopedAStatus& status, const OutcomeCase& expected) {
    EXPECT_EQ(status.getDescription(), expected.description);
    EXPECT_EQ(status.isOk(), expected.exception == EX_NONE);
    EXPECT_EQ(status.getExceptionCode(), expected.exception);
    EXPECT_EQ(status.getServiceSpecificError(), expected.serviceSpecific);
    EXPECT_EQ(status.getStatus(), STATUS_OK);
    EXPECT_STREQ(status.getMessage(), expected.message);
}

TEST(Status, TellsWhatItWasMadeFromHereAndThere) {
    const OutcomeCase cases[] = {
            {AStatus_newOk(), "No error", "00000000"},
            {AStatus_fromExceptionCode(EX_NONE), "No error", "00000000"},
            {AStatus_fromStatus(STATUS_OK), "No error", "00000000"},
            {AStatus_fromServiceSpecificError(5), "Status(-8, EX_SERVICE_SPECIFIC): '5: '",
             "f8ffffff00000000000000000000000005000000", EX_SERVICE_SPECIFIC, 5},
            {AStatus_fromServiceSpecificErrorWithMessage(5, "busy"),
             "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'",
             "f8ffffff040000006200750073007900000000000000000005000000", EX_SERVICE_SPECIFIC, 5,
             "busy"},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "bad"),
             "Status(-3, EX_ILLEGAL_ARGUMENT): 'bad'", "fdffffff03000000620061006400000000000000",
             EX_ILLEGAL_ARGUMENT, 0, "bad"},
    };
    for (const OutcomeCase& expected : cases) {
        SCOPED_TRACE(expected.description);
        const ScopedAStatus status(expected.made);
        ExpectOutcome(status, expected);
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), STATUS_OK);
        EXPECT_EQ(Hex(parcel.get()), expected.hex);
        AParcel_setDataPosition(parcel.get(), 0);
        ScopedAStatus read;
        ASSERT_EQ(AParcel_readStatusHeader(parcel.get(), read.getR()), STATUS_OK);
        EXPECT_EQ(AParcel_getDataPosition(parcel.get()), AParcel_getDataSize(parcel.get()));
        ExpectOutcome(read, expected);
    }
}

TEST(Status, MessageThatIsNoTextIsLeftOutOfAParcel) {
    const auto status = ScopedAStatus::fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "\xff");
    const ScopedAParcel parcel(AParcel_create());
    EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), STATUS_OK);
    EXPECT_EQ(Hex(parcel.get()), "fdffffff000000000000000000000000");
}

TEST(Status, FailedCallHasItsCodeAndNameAndNoBytes) {
    const struct {
        AStatus* made;
        binder_status_t code;
        const char* name;
    } cases[] = {
            {AStatus_fromStatus(STATUS_UNEXPECTED_NULL), -2147483640, "UNEXPECTED_NULL"},
            {AStatus_fromStatus(STATUS_DEAD_OBJECT), -32, "DEAD_OBJECT"},
            {AStatus_fromStatus(12345), STATUS_UNKNOWN_ERROR, "UNKNOWN_ERROR"},
            {AStatus_fromExceptionCode(EX_TRANSACTION_FAILED), -2147483646, "FAILED_TRANSACTION"},
            {AStatus_fromExceptionCode(-77), -2147483646, "FAILED_TRANSACTION"},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.name);
        const ScopedAStatus status(expected.made);
        EXPECT_EQ(status.getExceptionCode(), EX_TRANSACTION_FAILED);
        EXPECT_EQ(status.getStatus(), expected.code);
        EXPECT_EQ(status.getDescription(),
                  std::string("Status(-129, EX_TRANSACTION_FAILED): '") + expected.name + ": '");
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), expected.code);
        EXPECT_EQ(Hex(parcel.get()), "");
    }
}

}  // namespace
}  // namespace tests
