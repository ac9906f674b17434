#include <android/binder_auto_utils.h>
#include <gtest/gtest.h>

namespace {

using ndk::ScopedAStatus;

struct StatusCase {
    AStatus* made;
    const char* description;
    binder_exception_t exception = EX_NONE;
    int32_t serviceSpecific = 0;
    binder_status_t status = STATUS_OK;
    const char* message = "";
};

TEST(Status, TellsWhatItWasMadeFrom) {
    const StatusCase cases[] = {
            {AStatus_newOk(), "No error"},
            {AStatus_fromExceptionCode(EX_NONE), "No error"},
            {AStatus_fromStatus(STATUS_OK), "No error"},
            {AStatus_fromServiceSpecificError(5), "Status(-8, EX_SERVICE_SPECIFIC): '5: '",
             EX_SERVICE_SPECIFIC, 5},
            {AStatus_fromServiceSpecificErrorWithMessage(5, "busy"),
             "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'", EX_SERVICE_SPECIFIC, 5, STATUS_OK,
             "busy"},
            {AStatus_fromServiceSpecificError(0), "Status(-8, EX_SERVICE_SPECIFIC): '0: '",
             EX_SERVICE_SPECIFIC},
            {AStatus_fromExceptionCode(EX_ILLEGAL_ARGUMENT), "Status(-3, EX_ILLEGAL_ARGUMENT): ''",
             EX_ILLEGAL_ARGUMENT},
            {AStatus_fromExceptionCodeWithMessage(EX_ILLEGAL_ARGUMENT, "bad"),
             "Status(-3, EX_ILLEGAL_ARGUMENT): 'bad'", EX_ILLEGAL_ARGUMENT, 0, STATUS_OK, "bad"},
            {AStatus_fromStatus(STATUS_DEAD_OBJECT),
             "Status(-129, EX_TRANSACTION_FAILED): 'DEAD_OBJECT: '", EX_TRANSACTION_FAILED, 0,
             STATUS_DEAD_OBJECT},
            {AStatus_fromStatus(12345), "Status(-129, EX_TRANSACTION_FAILED): 'UNKNOWN_ERROR: '",
             EX_TRANSACTION_FAILED, 0, STATUS_UNKNOWN_ERROR},
            {AStatus_fromExceptionCode(-77),
             "Status(-129, EX_TRANSACTION_FAILED): 'FAILED_TRANSACTION: '", EX_TRANSACTION_FAILED,
             0, STATUS_FAILED_TRANSACTION},
    };
    for (const StatusCase& expected : cases) {
        const ScopedAStatus status(expected.made);
        SCOPED_TRACE(expected.description);
        EXPECT_EQ(status.getDescription(), expected.description);
        EXPECT_EQ(status.isOk(), expected.exception == EX_NONE);
        EXPECT_EQ(status.getExceptionCode(), expected.exception);
        EXPECT_EQ(status.getServiceSpecificError(), expected.serviceSpecific);
        EXPECT_EQ(status.getStatus(), expected.status);
        EXPECT_STREQ(status.getMessage(), expected.message);
    }
}

TEST(Status, ValuesAreThoseOfTheWire) {
    EXPECT_EQ(STATUS_UNEXPECTED_NULL, -2147483640);
    EXPECT_EQ(STATUS_FAILED_TRANSACTION, -2147483646);
    EXPECT_EQ(STATUS_NO_MEMORY, -12);
    EXPECT_EQ(STATUS_DEAD_OBJECT, -32);
    EXPECT_EQ(STATUS_INVALID_OPERATION, -38);
    EXPECT_EQ(STATUS_NOT_ENOUGH_DATA, -61);
    EXPECT_EQ(STATUS_UNKNOWN_TRANSACTION, -74);
    EXPECT_EQ(STATUS_BAD_INDEX, -75);
}

}  // namespace
