#include "host/binder/ArrayLength.h"
#include "host/binder/Parcel.h"

using zarvo::host::ReadArrayLength;
using zarvo::host::RefusalOf;
using zarvo::host::WriteArrayLength;

namespace {

template <typename T>
binder_status_t WriteArray(AParcel* parcel, const T* values, int32_t length) {
    const binder_status_t status = WriteArrayLength(parcel, values == nullptr, length);
    if (status != STATUS_OK || length <= 0) return status;
    const size_t bytes = static_cast<size_t>(length) * sizeof(T);
    uint8_t* const place = parcel->Append(bytes);
    if (place == nullptr) return STATUS_NO_MEMORY;
    std::memcpy(place, values, bytes);
    return STATUS_OK;
}

/** Writes elements that are shorter than a word as one each. */
template <typename Element>
binder_status_t WriteWords(AParcel* parcel, bool isNull, int32_t length, Element element) {
    const binder_status_t status = WriteArrayLength(parcel, isNull, length);
    if (status != STATUS_OK || length <= 0) return status;
    const auto count = static_cast<size_t>(length);
    uint8_t* const place = parcel->Append(count * sizeof(uint32_t));
    if (place == nullptr) return STATUS_NO_MEMORY;
    for (size_t i = 0; i < count; ++i) {
        const uint32_t word = element(i);
        std::memcpy(place + i * sizeof(word), &word, sizeof(word));
    }
    return STATUS_OK;
}

/** Reads the length and asks for room for that many elements. */
template <typename T, typename Allocator>
binder_status_t ReadLength(const AParcel* parcel, size_t elementBytes, void* data,
                           Allocator allocator, int32_t* length, T** values) {
    *values = nullptr;
    const binder_status_t status = ReadArrayLength(parcel, length);
    if (status != STATUS_OK) return status;
    if (*length > 0 && static_cast<size_t>(*length) > parcel->Remaining() / elementBytes) {
        return STATUS_NO_MEMORY;
    }
    if (!allocator(data, *length, values)) return RefusalOf(*length);
    if (*length > 0 && *values == nullptr) return STATUS_NO_MEMORY;
    return STATUS_OK;
}

template <typename T>
binder_status_t ReadArray(const AParcel* parcel, void* data,
                          bool (*allocator)(void*, int32_t, T**)) {
    int32_t length = 0;
    T* values = nullptr;
    const binder_status_t status = ReadLength(parcel, sizeof(T), data, allocator, &length, &values);
    if (status != STATUS_OK || length <= 0) return status;
    const size_t bytes = static_cast<size_t>(length) * sizeof(T);
    const uint8_t* place = nullptr;
    if (parcel->Take(bytes, &place) != STATUS_OK) return STATUS_NO_MEMORY;
    std::memcpy(values, place, bytes);
    return STATUS_OK;
}

}  // namespace

binder_status_t AParcel_writeInt32Array(AParcel* parcel, const int32_t* arrayData, int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeUint32Array(AParcel* parcel, const uint32_t* arrayData,
                                         int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeInt64Array(AParcel* parcel, const int64_t* arrayData, int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeUint64Array(AParcel* parcel, const uint64_t* arrayData,
                                         int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeFloatArray(AParcel* parcel, const float* arrayData, int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeDoubleArray(AParcel* parcel, const double* arrayData, int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeByteArray(AParcel* parcel, const int8_t* arrayData, int32_t length) {
    return WriteArray(parcel, arrayData, length);
}

binder_status_t AParcel_writeCharArray(AParcel* parcel, const char16_t* arrayData, int32_t length) {
    return WriteWords(parcel, arrayData == nullptr, length,
                      [arrayData](size_t index) { return uint32_t{arrayData[index]}; });
}

binder_status_t AParcel_writeBoolArray(AParcel* parcel, const void* arrayData, int32_t length,
                                       AParcel_boolArrayGetter getter) {
    return WriteWords(parcel, arrayData == nullptr, length, [arrayData, getter](size_t index) {
        return uint32_t{getter(arrayData, index)};
    });
}

binder_status_t AParcel_readInt32Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int32ArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readUint32Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint32ArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readInt64Array(const AParcel* parcel, void* arrayData,
                                       AParcel_int64ArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readUint64Array(const AParcel* parcel, void* arrayData,
                                        AParcel_uint64ArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readFloatArray(const AParcel* parcel, void* arrayData,
                                       AParcel_floatArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readDoubleArray(const AParcel* parcel, void* arrayData,
                                        AParcel_doubleArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readByteArray(const AParcel* parcel, void* arrayData,
                                      AParcel_byteArrayAllocator allocator) {
    return ReadArray(parcel, arrayData, allocator);
}

binder_status_t AParcel_readCharArray(const AParcel* parcel, void* arrayData,
                                      AParcel_charArrayAllocator allocator) {
    int32_t length = 0;
    char16_t* values = nullptr;
    binder_status_t status = ReadLength(parcel, 1, arrayData, allocator, &length, &values);
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        status = AParcel_readChar(parcel, values + i);
    }
    return status;
}

binder_status_t AParcel_readBoolArray(const AParcel* parcel, void* arrayData,
                                      AParcel_boolArrayAllocator allocator,
                                      AParcel_boolArraySetter setter) {
    int32_t length = 0;
    binder_status_t status = ReadArrayLength(parcel, &length);
    if (status == STATUS_OK && !allocator(arrayData, length)) status = RefusalOf(length);
    for (int32_t i = 0; status == STATUS_OK && i < length; ++i) {
        bool value = false;
        status = AParcel_readBool(parcel, &value);
        if (status == STATUS_OK) setter(arrayData, static_cast<size_t>(i), value);
    }
    return status;
}
