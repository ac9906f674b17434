#include "host/binder/Status.h"

#include <cstdlib>
#include <cstring>

#include "host/binder/StatusNames.h"

using zarvo::host::ExceptionName;
using zarvo::host::PruneException;
using zarvo::host::PruneStatus;
using zarvo::host::StatusName;

namespace {

/** Never destroyed: statuses are used until the very end of a process. */
AStatus* OkStatus() {
    static AStatus* const ok = new AStatus;
    return ok;
}

}  // namespace

AStatus* AStatus_newOk() {
    return OkStatus();
}

AStatus* AStatus_fromExceptionCode(binder_exception_t exception) {
    return AStatus_fromExceptionCodeWithMessage(exception, "");
}

AStatus* AStatus_fromExceptionCodeWithMessage(binder_exception_t exception, const char* message) {
    if (exception == EX_NONE) return OkStatus();
    exception = PruneException(exception);
    const int32_t detail = exception == EX_TRANSACTION_FAILED ? STATUS_FAILED_TRANSACTION : 0;
    return new AStatus{exception, detail, message};
}

AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific) {
    return AStatus_fromServiceSpecificErrorWithMessage(serviceSpecific, "");
}

AStatus* AStatus_fromServiceSpecificErrorWithMessage(int32_t serviceSpecific, const char* message) {
    return new AStatus{EX_SERVICE_SPECIFIC, serviceSpecific, message};
}

AStatus* AStatus_fromStatus(binder_status_t status) {
    if (status == STATUS_OK) return OkStatus();
    return new AStatus{EX_TRANSACTION_FAILED, PruneStatus(status), ""};
}

bool AStatus_isOk(const AStatus* status) {
    return status->exception == EX_NONE;
}

binder_exception_t AStatus_getExceptionCode(const AStatus* status) {
    return PruneException(status->exception);
}

int32_t AStatus_getServiceSpecificError(const AStatus* status) {
    return status->exception == EX_SERVICE_SPECIFIC ? status->detail : 0;
}

binder_status_t AStatus_getStatus(const AStatus* status) {
    return status->exception == EX_TRANSACTION_FAILED ? status->detail : STATUS_OK;
}

const char* AStatus_getMessage(const AStatus* status) {
    return status->message.c_str();
}

const char* AStatus_getDescription(const AStatus* status) {
    if (status->exception == EX_NONE) return strdup("No error");
    std::string text = "Status(" + std::to_string(status->exception) + ", " +
                       ExceptionName(status->exception) + "): '";
    if (status->exception == EX_SERVICE_SPECIFIC) {
        text += std::to_string(status->detail) + ": ";
    } else if (status->exception == EX_TRANSACTION_FAILED) {
        text += StatusName(status->detail) + ": ";
    }
    text += status->message + "'";
    return strdup(text.c_str());
}

void AStatus_deleteDescription(const char* description) {
    std::free(const_cast<char*>(description));
}

void AStatus_delete(AStatus* status) {
    if (status != OkStatus()) delete status;
}
