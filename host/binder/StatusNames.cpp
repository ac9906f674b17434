#include "host/binder/StatusNames.h"

#include <algorithm>
#include <iterator>

namespace zarvo::host {

namespace {

struct Name {
    int32_t code;
    const char* name;
};

constexpr Name kStatuses[] = {
        {STATUS_OK, "OK"},
        {STATUS_UNKNOWN_ERROR, "UNKNOWN_ERROR"},
        {STATUS_BAD_TYPE, "BAD_TYPE"},
        {STATUS_FAILED_TRANSACTION, "FAILED_TRANSACTION"},
        {STATUS_FDS_NOT_ALLOWED, "FDS_NOT_ALLOWED"},
        {STATUS_UNEXPECTED_NULL, "UNEXPECTED_NULL"},
        {STATUS_PERMISSION_DENIED, "PERMISSION_DENIED"},
        {STATUS_NAME_NOT_FOUND, "NAME_NOT_FOUND"},
        {STATUS_WOULD_BLOCK, "WOULD_BLOCK"},
        {STATUS_NO_MEMORY, "NO_MEMORY"},
        {STATUS_ALREADY_EXISTS, "ALREADY_EXISTS"},
        {STATUS_NO_INIT, "NO_INIT"},
        {STATUS_BAD_VALUE, "BAD_VALUE"},
        {STATUS_DEAD_OBJECT, "DEAD_OBJECT"},
        {STATUS_INVALID_OPERATION, "INVALID_OPERATION"},
        {STATUS_NOT_ENOUGH_DATA, "NOT_ENOUGH_DATA"},
        {STATUS_UNKNOWN_TRANSACTION, "UNKNOWN_TRANSACTION"},
        {STATUS_BAD_INDEX, "BAD_INDEX"},
        {STATUS_TIMED_OUT, "TIMED_OUT"},
};

constexpr Name kExceptions[] = {
        {EX_NONE, "EX_NONE"},
        {EX_SECURITY, "EX_SECURITY"},
        {EX_BAD_PARCELABLE, "EX_BAD_PARCELABLE"},
        {EX_ILLEGAL_ARGUMENT, "EX_ILLEGAL_ARGUMENT"},
        {EX_NULL_POINTER, "EX_NULL_POINTER"},
        {EX_ILLEGAL_STATE, "EX_ILLEGAL_STATE"},
        {EX_NETWORK_MAIN_THREAD, "EX_NETWORK_MAIN_THREAD"},
        {EX_UNSUPPORTED_OPERATION, "EX_UNSUPPORTED_OPERATION"},
        {EX_SERVICE_SPECIFIC, "EX_SERVICE_SPECIFIC"},
        {EX_PARCELABLE, "EX_PARCELABLE"},
        {EX_TRANSACTION_FAILED, "EX_TRANSACTION_FAILED"},
};

template <size_t kCount>
const Name* Find(const Name (&names)[kCount], int32_t code) {
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [code](const Name& name) { return name.code == code; });
    return found == std::end(names) ? nullptr : found;
}

template <size_t kCount>
std::string NameOf(const Name (&names)[kCount], int32_t code) {
    const Name* const found = Find(names, code);
    return found == nullptr ? std::to_string(code) : found->name;
}

}  // namespace

binder_status_t PruneStatus(binder_status_t status) {
    return Find(kStatuses, status) == nullptr ? STATUS_UNKNOWN_ERROR : status;
}

std::string StatusName(binder_status_t status) {
    return NameOf(kStatuses, status);
}

binder_exception_t PruneException(binder_exception_t exception) {
    return Find(kExceptions, exception) == nullptr ? EX_TRANSACTION_FAILED : exception;
}

std::string ExceptionName(binder_exception_t exception) {
    return NameOf(kExceptions, exception);
}

}  // namespace zarvo::host
