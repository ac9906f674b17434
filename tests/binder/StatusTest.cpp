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
    /** Bytes left by a reader. */
    int32_t unread = 0;
};

void ExpectOutcome(const ScopedAStatus& status, const OutcomeCase& expected) {
    EXPECT_EQ(status.getDescription(), expected.description);
    EXPECT_EQ(status.isOk(), expected.exception == EX_NONE);
    EXPECT_EQ(status.getExceptionCode(), expected.exception);
    EXPECT_EQ(status.getServiceSpecificError(), expected.serviceSpecific);
    EXPECT_EQ(status.getStatus(), STATUS_OK);
    EXPECT_STREQ(status.getMessage(), expected.message);
}

/** Expects that the bytes are read as this outcome. */
void ExpectReadOutcome(const OutcomeCase& expected) {
    const ScopedAParcel parcel = ParcelOf(expected.hex);
    ScopedAStatus status;
    ASSERT_EQ(AParcel_readStatusHeader(parcel.get(), status.getR()), STATUS_OK);
    EXPECT_EQ(AParcel_getDataPosition(parcel.get()),
              AParcel_getDataSize(parcel.get()) - expected.unread);
    ExpectOutcome(status, expected);
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
            {AStatus_fromExceptionCode(EX_PARCELABLE), "Status(-9, EX_PARCELABLE): ''",
             "f7ffffff00000000000000000000000000000000", EX_PARCELABLE, 0, "", 4},
    };
    for (const OutcomeCase& expected : cases) {
        SCOPED_TRACE(expected.description);
        const ScopedAStatus status(expected.made);
        ExpectOutcome(status, expected);
        const ScopedAParcel parcel(AParcel_create());
        EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), STATUS_OK);
        EXPECT_EQ(Hex(parcel.get()), expected.hex);
        ExpectReadOutcome(expected);
    }
}

TEST(Status, HasTheNumberAndNameOfItsException) {
    std::string all;
    for (binder_exception_t code = EX_SECURITY; code >= EX_UNSUPPORTED_OPERATION; --code)
        all += ScopedAStatus::fromExceptionCode(code).getDescription() + ' ';
    EXPECT_EQ(all,
              "Status(-1, EX_SECURITY): '' Status(-2, EX_BAD_PARCELABLE): '' "
              "Status(-3, EX_ILLEGAL_ARGUMENT): '' Status(-4, EX_NULL_POINTER): '' "
              "Status(-5, EX_ILLEGAL_STATE): '' Status(-6, EX_NETWORK_MAIN_THREAD): '' "
              "Status(-7, EX_UNSUPPORTED_OPERATION): '' ");
}

TEST(Status, MessageThatIsNoTextIsLeftOutOfAParcel) {
    const auto status = ScopedAStatus::fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "\xff");
    const ScopedAParcel parcel(AParcel_create());
    EXPECT_EQ(AParcel_writeStatusHeader(parcel.get(), status.get()), STATUS_OK);
    EXPECT_EQ(Hex(parcel.get()), "fdffffff000000000000000000000000");
}

TEST(Status, OddOutcomesAreReadAsFarAsTheyMakeSense) {
    const char* const refused = "Status(-3, EX_ILLEGAL_ARGUMENT): ''";
    const OutcomeCase cases[] = {
            {nullptr, "No error", "80ffffff 08000000 00000000"},
            {nullptr, "Status(-77, -77): ''", "b3ffffff 00000000 00000000 00000000",
             EX_TRANSACTION_FAILED},
            {nullptr, "Status(5, 5): ''", "05000000 00000000 00000000 00000000",
             EX_TRANSACTION_FAILED},
            {nullptr, "Status(-129, EX_TRANSACTION_FAILED): 'OK: '",
             "7fffffff 00000000 00000000 00000000", EX_TRANSACTION_FAILED},
            {nullptr, refused, "fdffffff ffffffff 00000000", EX_ILLEGAL_ARGUMENT},
            {nullptr, refused, "fdffffff 00000000 00000000 08000000 01020304", EX_ILLEGAL_ARGUMENT},
            {nullptr, "Status(-9, EX_PARCELABLE): ''",
             "f7ffffff 00000000 00000000 00000000 08000000 01020304", EX_PARCELABLE},
    };
    for (const OutcomeCase& expected : cases) {
        SCOPED_TRACE(expected.hex);
        ExpectReadOutcome(expected);
    }
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
