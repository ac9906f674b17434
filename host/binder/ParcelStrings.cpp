#include "host/binder/ArrayLength.h"
#include "host/binder/Parcel.h"
#include "host/binder/Utf.h"

using zarvo::host::ReadArrayLength;
using zarvo::host::RefusalOf;
using zarvo::host::WriteArrayLength;

namespace {

/** Reads a string into the room that `allocate(length, &buffer)` gives. */
template <typename Allocate>
binder_status_t ReadString(const AParcel* parcel, Allocate allocate) {
    const uint8_t* units = nullptr;
    size_t count = 0;
    const binder_status_t status = parcel->ReadUnits(&units, &count);
    if (status != STATUS_OK) return status;
    if (units == nullptr) return allocate(-1, nullptr) ? STATUS_OK : STATUS_UNEXPECTED_NULL;
    const size_t length = zarvo::host::Utf8Length(units, count);
    if (length >= INT32_MAX) return STATUS_NO_MEMORY;
    char* utf8 = nullptr;
    if (!allocate(static_cast<int32_t>(length + 1), &utf8) || utf8 == nullptr) {
        return STATUS_NO_MEMORY;
    }
    zarvo::host::Utf16ToUtf8(units, count, utf8);
    utf8[length] = '\0';
    return STATUS_OK;
}

}  // namespace

binder_status_t AParcel_writeString(AParcel* parcel, const char* string, int32_t length) {
    if (string == nullptr) {
        return length == -1 ? parcel->Write<int32_t>(-1) : STATUS_BAD_VALUE;
    }
    if (length < 0) return STATUS_BAD_VALUE;
    const auto units = zarvo::host::Utf8ToUtf16({string, static_cast<size_t>(length)});
    return units ? parcel->WriteUnits(*units) : STATUS_BAD_VALUE;
}

binder_status_t AParcel_readString(const AParcel* parcel, void* stringData,
                                   AParcel_stringAllocator allocator) {
    return ReadString(parcel, [&](int32_t length, char** buffer) {
        return allocator(stringData, length, buffer);
    });
}

binder_status_t AParcel_writeStringArray(AParcel* parcel, const void* arrayData, int32_t length,
                                         AParcel_stringArrayElementGetter getter) {
    binder_status_t status = WriteArrayLength(parcel, arrayData == nullptr, length);
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        int32_t elementLength = 0;
        const char* const element = getter(arrayData, static_cast<size_t>(i), &elementLength);
        status = AParcel_writeString(parcel, element, element == nullptr ? -1 : elementLength);
    }
    return status;
}

binder_status_t AParcel_readStringArray(const AParcel* parcel, void* arrayData,
                                        AParcel_stringArrayAllocator allocator,
                                        AParcel_stringArrayElementAllocator elementAllocator) {
    int32_t length = 0;
    binder_status_t status = ReadArrayLength(parcel, &length);
    if (status == STATUS_OK && !allocator(arrayData, length)) status = RefusalOf(length);
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        status = ReadString(parcel, [&](int32_t elementLength, char** buffer) {
            return elementAllocator(arrayData, static_cast<size_t>(i), elementLength, buffer);
        });
    }
    return status;
}

/* An array of parcelables differs from all others: a refused null is a want of memory too. */

binder_status_t AParcel_writeParcelableArray(AParcel* parcel, const void* arrayData, int32_t length,
                                             AParcel_writeParcelableElement elementWriter) {
    binder_status_t status = WriteArrayLength(parcel, arrayData == nullptr, length);
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        status = elementWriter(parcel, arrayData, static_cast<size_t>(i));
    }
    return status;
}

binder_status_t AParcel_readParcelableArray(const AParcel* parcel, void* arrayData,
                                            AParcel_parcelableArrayAllocator allocator,
                                            AParcel_readParcelableElement elementReader) {
    int32_t length = 0;
    binder_status_t status = ReadArrayLength(parcel, &length);
    if (status == STATUS_OK && !allocator(arrayData, length)) status = STATUS_NO_MEMORY;
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        status = elementReader(parcel, arrayData, static_cast<size_t>(i));
    }
    return status;
}
