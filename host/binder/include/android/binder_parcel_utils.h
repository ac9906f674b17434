/**
 * C++ values in parcels, chosen by type. Generated code writes and reads everything with these.
 *
 * They keep the rules of the C API: a parcel belongs to one thread; every function returns a
 * status; after a failed read the value is valid but unspecified. No reader but
 * AParcel_resizeVector, which has a limit of its own, allocates more than a small multiple of the
 * bytes that the parcel gives out, which in turn are at most a few times those it holds.
 *
 * Null is a value of optional, unique_ptr, SpAIBinder and shared_ptr to an interface. The Nullable
 * functions pass it on; the others refuse it with STATUS_UNEXPECTED_NULL, except that a null
 * interface passes everywhere.
 */
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_interface_utils.h>
#include <android/binder_internal_parcel_sequences.h>
#include <android/binder_internal_parcel_types.h>
#include <android/binder_internal_parcel_values.h>
#include <android/binder_parcel.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace ndk {

template <typename T>
binder_status_t AParcel_writeData(AParcel* parcel, const T& value);
template <typename T>
binder_status_t AParcel_readData(const AParcel* parcel, T* value);
template <typename T>
binder_status_t AParcel_writeNullableData(AParcel* parcel, const T& value);
template <typename T>
binder_status_t AParcel_readNullableData(const AParcel* parcel, T* value);

// ---- vectors and fixed-size arrays

namespace internal {

/** Elements of a sequence that may be null, or of a nullable type, may be null themselves. */
template <typename Sequence>
inline constexpr bool kNullableElements =
        kIsOf<Sequence, std::optional> || kIsNullable<ElementType<Sequence>>;

template <typename Sequence>
binder_status_t WriteElement(AParcel* parcel, const void* arrayData, std::size_t index) {
    const auto& element = ElementAt<Sequence>(arrayData, index);
    if constexpr (kNullableElements<Sequence>) {
        return AParcel_writeNullableData(parcel, element);
    } else {
        return AParcel_writeData(parcel, element);
    }
}

template <typename Sequence>
binder_status_t ReadElement(const AParcel* parcel, void* arrayData, std::size_t index) {
    auto& element = Grow<Sequence>(arrayData, index);
    if constexpr (kNullableElements<Sequence>) {
        return AParcel_readNullableData(parcel, &element);
    } else {
        return AParcel_readData(parcel, &element);
    }
}

template <typename T>
inline constexpr bool kIsString =
        std::is_same_v<T, std::string> || std::is_same_v<T, std::optional<std::string>>;

template <typename Sequence>
binder_status_t WriteNumericSequence(AParcel* parcel, const Sequence* sequence, int32_t length) {
    using Wire = WireType<ElementType<Sequence>>;
    const Wire none{};  // an empty vector may have no address, and no address may stand for null
    const Wire* data = sequence == nullptr ? nullptr : &none;
    if (length > 0) data = reinterpret_cast<const Wire*>(ElementsOf(*sequence).data());
    return WriteNumbers(parcel, data, length);
}

template <typename Sequence>
binder_status_t WriteSequence(AParcel* parcel, const Sequence& sequence) {
    using Element = ElementType<Sequence>;
    int32_t length = 0;
    if (!LengthOf(sequence, &length)) return STATUS_BAD_VALUE;
    const Sequence* data = length < 0 ? nullptr : &sequence;
    if constexpr (kIsNumeric<Element>) {
        return WriteNumericSequence(parcel, data, length);
    } else if constexpr (std::is_same_v<Element, bool>) {
        return AParcel_writeBoolArray(parcel, data, length, GetBool<Sequence>);
    } else if constexpr (kIsString<Element>) {
        return AParcel_writeStringArray(parcel, data, length, GetStringElement<Sequence>);
    } else {
        return AParcel_writeParcelableArray(parcel, data, length, WriteElement<Sequence>);
    }
}

template <typename Sequence>
binder_status_t ReadSequence(const AParcel* parcel, Sequence* sequence) {
    using Element = ElementType<Sequence>;
    if constexpr (kIsNumeric<Element>) {
        return ReadNumbers(parcel, sequence, AllocateNumbers<Sequence>);
    } else if constexpr (std::is_same_v<Element, bool>) {
        return AParcel_readBoolArray(parcel, sequence, AllocateBools<Sequence>, SetBool<Sequence>);
    } else if constexpr (kIsString<Element>) {
        return AParcel_readStringArray(parcel, sequence, Prepare<Sequence>,
                                       AllocateStringElement<Sequence>);
    } else {
        return AParcel_readParcelableArray(parcel, sequence, Prepare<Sequence>,
                                           ReadElement<Sequence>);
    }
}

}  // namespace internal

/** STATUS_BAD_VALUE for more than INT32_MAX elements. */
template <typename T>
binder_status_t AParcel_writeVector(AParcel* parcel, const std::vector<T>& vec) {
    return internal::WriteSequence(parcel, vec);
}

template <typename T>
binder_status_t AParcel_writeVector(AParcel* parcel, const std::optional<std::vector<T>>& vec) {
    return internal::WriteSequence(parcel, vec);
}

/**
 * Replaces the content. STATUS_BAD_VALUE for an impossible length, STATUS_NO_MEMORY for numbers
 * that the bytes left do not hold and for more elements of any kind than bytes are left;
 * STATUS_NOT_ENOUGH_DATA if other elements end before their number. A null array is
 * STATUS_UNEXPECTED_NULL if the elements are numbers, booleans or strings, STATUS_NO_MEMORY if they
 * are anything else.
 */
template <typename T>
binder_status_t AParcel_readVector(const AParcel* parcel, std::vector<T>* vec) {
    return internal::ReadSequence(parcel, vec);
}

template <typename T>
binder_status_t AParcel_readVector(const AParcel* parcel, std::optional<std::vector<T>>* vec) {
    return internal::ReadSequence(parcel, vec);
}

/** Tells the callee how long a vector the caller of an `out T[]` has; -1 for null. */
template <typename Vector>
binder_status_t AParcel_writeVectorSize(AParcel* parcel, const Vector& vec) {
    int32_t length = 0;
    if (!internal::LengthOf(vec, &length)) return STATUS_BAD_VALUE;
    return AParcel_writeInt32(parcel, length);
}

/**
 * Gives an `out T[]` the length told, with default elements: STATUS_UNEXPECTED_NULL for a negative
 * one (-1 makes an optional null), STATUS_NO_MEMORY above 1,000,000.
 */
template <typename Vector>
binder_status_t AParcel_resizeVector(const AParcel* parcel, Vector* vec) {
    constexpr int32_t kMaxLength = 1000000;
    int32_t length = 0;
    const binder_status_t status = AParcel_readInt32(parcel, &length);
    if (status != STATUS_OK) return status;
    if (length > kMaxLength) return STATUS_NO_MEMORY;
    return internal::Resize(vec, length) ? STATUS_OK : STATUS_UNEXPECTED_NULL;
}

// ---- anything

/** Writes a value that is not null; see the head of the file. */
template <typename T>
binder_status_t AParcel_writeData(AParcel* parcel, const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return AParcel_writeBool(parcel, value);
    } else if constexpr (internal::kIsNumeric<T>) {
        return internal::WriteNumber(parcel, static_cast<internal::WireType<T>>(value));
    } else if constexpr (std::is_same_v<T, std::string>) {
        return AParcel_writeString(parcel, value);
    } else if constexpr (internal::kIsSequence<T>) {
        return internal::WriteSequence(parcel, value);
    } else if constexpr (std::is_same_v<T, SpAIBinder>) {
        return AParcel_writeRequiredStrongBinder(parcel, value);
    } else if constexpr (std::is_same_v<T, ScopedFileDescriptor>) {
        return AParcel_writeRequiredParcelFileDescriptor(parcel, value);
    } else if constexpr (internal::kIsInterface<T> || internal::kIsParcelable<T>) {
        return AParcel_writeParcelable(parcel, value);
    } else {
        static_assert(internal::kUnsupported<T>, "not a type of AIDL, or one that may be null");
    }
}

/** Reads a value and refuses null; see the head of the file. */
template <typename T>
binder_status_t AParcel_readData(const AParcel* parcel, T* value) {
    if constexpr (std::is_same_v<T, bool>) {
        return AParcel_readBool(parcel, value);
    } else if constexpr (internal::kIsNumeric<T>) {
        internal::WireType<T> read{};
        const binder_status_t status = internal::ReadNumber(parcel, &read);
        if (status == STATUS_OK) *value = static_cast<T>(read);
        return status;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return AParcel_readString(parcel, value);
    } else if constexpr (internal::kIsSequence<T>) {
        return internal::ReadSequence(parcel, value);
    } else if constexpr (std::is_same_v<T, SpAIBinder>) {
        return AParcel_readRequiredStrongBinder(parcel, value);
    } else if constexpr (std::is_same_v<T, ScopedFileDescriptor>) {
        return AParcel_readRequiredParcelFileDescriptor(parcel, value);
    } else if constexpr (internal::kIsInterface<T> || internal::kIsParcelable<T>) {
        return AParcel_readParcelable(parcel, value);
    } else {
        static_assert(internal::kUnsupported<T>, "not a type of AIDL, or one that may be null");
    }
}

/** Writes a value or null; a type that has no null is written as by AParcel_writeData. */
template <typename T>
binder_status_t AParcel_writeNullableData(AParcel* parcel, const T& value) {
    if constexpr (std::is_same_v<T, SpAIBinder>) {
        return AParcel_writeNullableStrongBinder(parcel, value);
    } else if constexpr (std::is_same_v<T, ScopedFileDescriptor>) {
        return AParcel_writeNullableParcelFileDescriptor(parcel, value);
    } else if constexpr (!internal::kIsNullable<T>) {
        return AParcel_writeData(parcel, value);
    } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        return AParcel_writeString(parcel, value);
    } else if constexpr (internal::kIsSequence<std::decay_t<decltype(*value)>>) {
        return internal::WriteSequence(parcel, value);
    } else {
        return AParcel_writeNullableParcelable(parcel, value);
    }
}

/** Reads a value or null; a type that has no null is read as by AParcel_readData. */
template <typename T>
binder_status_t AParcel_readNullableData(const AParcel* parcel, T* value) {
    if constexpr (std::is_same_v<T, SpAIBinder>) {
        return AParcel_readNullableStrongBinder(parcel, value);
    } else if constexpr (std::is_same_v<T, ScopedFileDescriptor>) {
        return AParcel_readNullableParcelFileDescriptor(parcel, value);
    } else if constexpr (!internal::kIsNullable<T>) {
        return AParcel_readData(parcel, value);
    } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        return AParcel_readString(parcel, value);
    } else if constexpr (internal::kIsSequence<std::decay_t<decltype(**value)>>) {
        return internal::ReadSequence(parcel, value);
    } else {
        return AParcel_readNullableParcelable(parcel, value);
    }
}

}  // namespace ndk
