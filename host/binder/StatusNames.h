#pragma once

#include <android/binder_status.h>

#include <string>

namespace zarvo::host {

/** The status itself if it is one of the STATUS_ values, STATUS_UNKNOWN_ERROR otherwise. */
binder_status_t PruneStatus(binder_status_t status);
/** Its name without STATUS_, "OK" for success. */
std::string StatusName(binder_status_t status);

/** The exception itself if it is one of the EX_ values, EX_TRANSACTION_FAILED otherwise. */
binder_exception_t PruneException(binder_exception_t exception);
/** Its name with EX_, the number if it has none. */
std::string ExceptionName(binder_exception_t exception);

}  // namespace zarvo::host
