#pragma once

#include "host/binder/Parcel.h"

namespace zarvo::host {

/** The length of a null array. */
constexpr int32_t kNullArray = -1;

/** Writes the length of an array; STATUS_BAD_VALUE if it does not go with null or the lack of it.
 */
inline binder_status_t WriteArrayLength(AParcel* parcel, bool isNull, int32_t length) {
    if (length < kNullArray || (isNull ? length > 0 : length < 0)) return STATUS_BAD_VALUE;
    return parcel->Write(length);
}

/** Reads a length that the bytes left may hold, one byte an element at the least. */
inline binder_status_t ReadArrayLength(const AParcel* parcel, int32_t* length) {
    const binder_status_t status = parcel->Read(length);
    if (status != STATUS_OK) return status;
    if (*length < kNullArray) return STATUS_BAD_VALUE;
    if (*length > 0 && static_cast<size_t>(*length) > parcel->Remaining()) return STATUS_NO_MEMORY;
    return STATUS_OK;
}

/** What a reader that refuses an array of that length makes of the call. */
inline binder_status_t RefusalOf(int32_t length) {
    return length == kNullArray ? STATUS_UNEXPECTED_NULL : STATUS_NO_MEMORY;
}

}  // namespace zarvo::host
