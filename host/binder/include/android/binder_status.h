#pragma once

#include <errno.h>
#include <stdbool.h>
#include <stdint.h>

/** What the library exports; everything not marked with it stays inside. */
#if !defined(ABINDER_API)
#define ABINDER_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** How a call fared below the interface: at reading, writing or carrying a parcel. */
enum {
    STATUS_OK = 0,
    STATUS_UNKNOWN_ERROR = INT32_MIN,
    STATUS_BAD_TYPE = INT32_MIN + 1,
    STATUS_FAILED_TRANSACTION = INT32_MIN + 2,
    STATUS_FDS_NOT_ALLOWED = INT32_MIN + 7,
    STATUS_UNEXPECTED_NULL = INT32_MIN + 8,
    STATUS_PERMISSION_DENIED = -EPERM,
    STATUS_NAME_NOT_FOUND = -ENOENT,
    STATUS_WOULD_BLOCK = -EWOULDBLOCK,
    STATUS_NO_MEMORY = -ENOMEM,
    STATUS_ALREADY_EXISTS = -EEXIST,
    STATUS_NO_INIT = -ENODEV,
    STATUS_BAD_VALUE = -EINVAL,
    STATUS_DEAD_OBJECT = -EPIPE,
    STATUS_INVALID_OPERATION = -ENOSYS,
    STATUS_NOT_ENOUGH_DATA = -ENODATA,
    STATUS_UNKNOWN_TRANSACTION = -EBADMSG,
    STATUS_BAD_INDEX = -EOVERFLOW,
    STATUS_TIMED_OUT = -ETIMEDOUT,
};

/**
 * One of the STATUS_ values. The library hands out no other number: one it does not know, also one
 * a service's method returned, becomes STATUS_UNKNOWN_ERROR.
 */
typedef int32_t binder_status_t;

/** What went wrong in a method, as the method itself tells it. */
enum {
    EX_NONE = 0,
    EX_SECURITY = -1,
    EX_BAD_PARCELABLE = -2,
    EX_ILLEGAL_ARGUMENT = -3,
    EX_NULL_POINTER = -4,
    EX_ILLEGAL_STATE = -5,
    EX_NETWORK_MAIN_THREAD = -6,
    EX_UNSUPPORTED_OPERATION = -7,
    /** The interface's own error number tells more: AStatus_getServiceSpecificError. */
    EX_SERVICE_SPECIFIC = -8,
    EX_PARCELABLE = -9,
    /** The call failed below the interface: AStatus_getStatus tells how. Never on the wire. */
    EX_TRANSACTION_FAILED = -129,
};

/** One of the EX_ values; others become EX_TRANSACTION_FAILED. */
typedef int32_t binder_exception_t;

/**
 * The outcome of a method: an exception with its message, an interface's own error, or a status of
 * the transport. It never changes after it is made, so any number of threads may read it.
 *
 * The makers below give an object that the caller ends with AStatus_delete. Their messages are
 * copied. The readers take an object that is not null.
 */
struct AStatus;
typedef struct AStatus AStatus;

/** The status of success: one shared object, which AStatus_delete leaves alone. */
ABINDER_API AStatus* AStatus_newOk(void) __attribute__((warn_unused_result));

/**
 * An exception without a message; EX_NONE is success. An unknown code, EX_TRANSACTION_FAILED too,
 * gives EX_TRANSACTION_FAILED with STATUS_FAILED_TRANSACTION.
 */
ABINDER_API AStatus* AStatus_fromExceptionCode(binder_exception_t exception)
        __attribute__((warn_unused_result));

/** AStatus_fromExceptionCode with a NUL-terminated message in UTF-8, not null. */
ABINDER_API AStatus* AStatus_fromExceptionCodeWithMessage(binder_exception_t exception,
                                                          const char* message)
        __attribute__((warn_unused_result));

/** EX_SERVICE_SPECIFIC with the interface's own number. The number 0 is an error like others. */
ABINDER_API AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific)
        __attribute__((warn_unused_result));

/** AStatus_fromServiceSpecificError with a NUL-terminated message in UTF-8, not null. */
ABINDER_API AStatus* AStatus_fromServiceSpecificErrorWithMessage(int32_t serviceSpecific,
                                                                 const char* message)
        __attribute__((warn_unused_result));

/** EX_TRANSACTION_FAILED with that status; STATUS_OK gives success. */
ABINDER_API AStatus* AStatus_fromStatus(binder_status_t status) __attribute__((warn_unused_result));

/** True for success alone. */
ABINDER_API bool AStatus_isOk(const AStatus* status);

/** EX_NONE, or which kind of error this is. */
ABINDER_API binder_exception_t AStatus_getExceptionCode(const AStatus* status);

/** The interface's own number; 0 unless the exception is EX_SERVICE_SPECIFIC. */
ABINDER_API int32_t AStatus_getServiceSpecificError(const AStatus* status);

/** How the transport failed; STATUS_OK unless the exception is EX_TRANSACTION_FAILED. */
ABINDER_API binder_status_t AStatus_getStatus(const AStatus* status);

/** The message, "" if there is none; it belongs to `status`. */
ABINDER_API const char* AStatus_getMessage(const AStatus* status);

/**
 * A line for a log, such as "Status(-8, EX_SERVICE_SPECIFIC): '5: busy'". The caller ends it with
 * AStatus_deleteDescription.
 */
ABINDER_API const char* AStatus_getDescription(const AStatus* status)
        __attribute__((warn_unused_result));

/** Ends what AStatus_getDescription gave; null is fine. */
ABINDER_API void AStatus_deleteDescription(const char* description);

/** Ends a status; null is fine. */
ABINDER_API void AStatus_delete(AStatus* status);

#ifdef __cplusplus
}
#endif
