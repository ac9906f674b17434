/**
 * C++ values in parcels, chosen by type. Generated code writes and reads everything with these.
 *
 * They keep the rules of the C API: a parcel belongs to one thread; every function returns a
 * status; after a failed read the value is valid but unspecified. No reader allocates more than
 * a small multiple of the bytes that the parcel holds.
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
#include <android/binder_parcel.h>

#include <cstddef>
#include <cstdint>
#include <memory>
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

// ---- strings, in UTF-8

/** STATUS_BAD_VALUE if it is no UTF-8. */
inline binder_status_t AParcel_writeString(AParcel* parcel, const std::string& string) {
    int32_t length = 0;
    const char* data = internal::StringData(string, &length);
    return data == nullptr ? STATUS_BAD_VALUE : ::AParcel_writeString(parcel, data, length);
}

inline binder_status_t AParcel_writeString(AParcel* parcel,
                                           const std::optional<std::string>& string) {
    if (!string.has_value()) return ::AParcel_writeString(parcel, nullptr, -1);
    return AParcel_writeString(parcel, *string);
}

inline binder_status_t AParcel_readString(const AParcel* parcel, std::string* string) {
    return ::AParcel_readString(parcel, string, internal::AllocateStringData<std::string>);
}

inline binder_status_t AParcel_readString(const AParcel* parcel,
                                          std::optional<std::string>* string) {
    return ::AParcel_readString(parcel, string,
                                internal::AllocateStringData<std::optional<std::string>>);
}

// ---- binder objects and files

/** STATUS_UNEXPECTED_NULL for null. */
inline binder_status_t AParcel_writeRequiredStrongBinder(AParcel* parcel,
                                                         const SpAIBinder& binder) {
    if (binder.get() == nullptr) return STATUS_UNEXPECTED_NULL;
    return AParcel_writeStrongBinder(parcel, binder.get());
}

inline binder_status_t AParcel_writeNullableStrongBinder(AParcel* parcel,
                                                         const SpAIBinder& binder) {
    return AParcel_writeStrongBinder(parcel, binder.get());
}

inline binder_status_t AParcel_readNullableStrongBinder(const AParcel* parcel, SpAIBinder* binder) {
    AIBinder* read = nullptr;
    const binder_status_t status = AParcel_readStrongBinder(parcel, &read);
    if (status == STATUS_OK) binder->set(read);
    return status;
}

/** STATUS_UNEXPECTED_NULL for null. */
inline binder_status_t AParcel_readRequiredStrongBinder(const AParcel* parcel, SpAIBinder* binder) {
    const binder_status_t status = AParcel_readNullableStrongBinder(parcel, binder);
    if (status == STATUS_OK && binder->get() == nullptr) return STATUS_UNEXPECTED_NULL;
    return status;
}

/** Writes a duplicate; STATUS_UNEXPECTED_NULL for none. */
inline binder_status_t AParcel_writeRequiredParcelFileDescriptor(AParcel* parcel,
                                                                 const ScopedFileDescriptor& fd) {
    if (fd.get() < 0) return STATUS_UNEXPECTED_NULL;
    return AParcel_writeParcelFileDescriptor(parcel, fd.get());
}

inline binder_status_t AParcel_writeNullableParcelFileDescriptor(AParcel* parcel,
                                                                 const ScopedFileDescriptor& fd) {
    return AParcel_writeParcelFileDescriptor(parcel, fd.get());
}

inline binder_status_t AParcel_readNullableParcelFileDescriptor(const AParcel* parcel,
                                                                ScopedFileDescriptor* fd) {
    int read = -1;
    const binder_status_t status = AParcel_readParcelFileDescriptor(parcel, &read);
    if (status == STATUS_OK) fd->set(read);
    return status;
}

/** STATUS_UNEXPECTED_NULL for none. */
inline binder_status_t AParcel_readRequiredParcelFileDescriptor(const AParcel* parcel,
                                                                ScopedFileDescriptor* fd) {
    const binder_status_t status = AParcel_readNullableParcelFileDescriptor(parcel, fd);
    if (status == STATUS_OK && fd->get() < 0) return STATUS_UNEXPECTED_NULL;
    return status;
}

// ---- parcelables, unions and interfaces

/** A presence word and what `P` writes of itself; an interface as its binder object or null. */
template <typename P>
binder_status_t AParcel_writeParcelable(AParcel* parcel, const P& value) {
    if constexpr (internal::kIsInterface<P>) {
        return P::element_type::writeToParcel(parcel, value);
    } else {
        const binder_status_t status = AParcel_writeInt32(parcel, 1);
        return status != STATUS_OK ? status : value.writeToParcel(parcel);
    }
}

/** STATUS_UNEXPECTED_NULL if the presence word is 0; any other value stands for presence. */
template <typename P>
binder_status_t AParcel_readParcelable(const AParcel* parcel, P* value) {
    if constexpr (internal::kIsInterface<P>) {
        return P::element_type::readFromParcel(parcel, value);
    } else {
        int32_t present = 0;
        const binder_status_t status = AParcel_readInt32(parcel, &present);
        if (status != STATUS_OK) return status;
        return present == 0 ? STATUS_UNEXPECTED_NULL : value->readFromParcel(parcel);
    }
}

/** P: optional or unique_ptr of a parcelable, or shared_ptr of an interface. */
template <typename P>
binder_status_t AParcel_writeNullableParcelable(AParcel* parcel, const P& value) {
    if constexpr (internal::kIsInterface<P>) {
        return AParcel_writeParcelable(parcel, value);
    } else {
        return value ? AParcel_writeParcelable(parcel, *value) : AParcel_writeInt32(parcel, 0);
    }
}

/** Reads what AParcel_writeNullableParcelable wrote. */
template <typename P>
binder_status_t AParcel_readNullableParcelable(const AParcel* parcel, P* value) {
    if constexpr (internal::kIsInterface<P>) {
        return AParcel_readParcelable(parcel, value);
    } else {
        int32_t present = 0;
        const binder_status_t status = AParcel_readInt32(parcel, &present);
        value->reset();
        if (status != STATUS_OK || present == 0) return status;
        if constexpr (internal::kIsOf<P, std::unique_ptr>) {
            *value = std::make_unique<typename P::element_type>();
        } else {
            value->emplace();
        }
        return (*value)->readFromParcel(parcel);
    }
}

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
binder_status_t WriteNumericSequence(AParcel* parcel, const Sequence& sequence, int32_t length) {
    using Wire = WireType<ElementType<Sequence>>;
    const Wire none{};  // an empty vector may have no address, and no address may stand for null
    const Wire* data = length < 0 ? nullptr : &none;
    if (length > 0) data = reinterpret_cast<const Wire*>(ElementsOf(sequence).data());
    return WriteNumbers(parcel, data, length);
}

template <typename Sequence>
binder_status_t WriteSequence(AParcel* parcel, const Sequence& sequence) {
    using Element = ElementType<Sequence>;
    int32_t length = 0;
    if (!LengthOf(sequence, &length)) return STATUS_BAD_VALUE;
    if constexpr (kIsNumeric<Element>) {
        return WriteNumericSequence(parcel, sequence, length);
    } else if constexpr (std::is_same_v<Element, bool>) {
        return AParcel_writeBoolArray(parcel, &sequence, length, GetBool<Sequence>);
    } else if constexpr (kIsString<Element>) {
        return AParcel_writeStringArray(parcel, &sequence, length, GetStringElement<Sequence>);
    } else {
        return AParcel_writeParcelableArray(parcel, &sequence, length, WriteElement<Sequence>);
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
 * Replaces the content. STATUS_BAD_VALUE for an impossible length, STATUS_NO_MEMORY for one that
 * the bytes left do not hold. A null array is STATUS_UNEXPECTED_NULL if the elements are numbers,
 * booleans or strings, STATUS_NO_MEMORY if they are anything else.
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
