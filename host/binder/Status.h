#pragma once

#include <android/binder_status.h>

#include <string>

/** See binder_status.h. `exception` is as read from the wire; readers outside see it pruned. */
struct AStatus {
    binder_exception_t exception = EX_NONE;
    /** Of EX_SERVICE_SPECIFIC the interface's number, of EX_TRANSACTION_FAILED the status. */
    int32_t detail = 0;
    std::string message;
};
