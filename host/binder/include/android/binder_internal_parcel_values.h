/**
 * The single values among what binder_parcel_utils.h, which is the header to include, offers:
 * strings, binder objects, files, parcelables and interfaces.
 */
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_internal_parcel_sequences.h>
#include <android/binder_internal_parcel_types.h>
#include <android/binder_parcel.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ndk {

// ---- strings, in UTF-8

/** STATUS_BAD_VALUE if it is no UTF-8. */
inline binder_status_t AParcel_writeString(AParcel* parcel, const std::string& string) {
    int32_t length = 0;
    const char* data = internal::StringData(string, &length);
    return ::AParcel_writeString(parcel, data, length);
}

inline binder_status_t AParcel_writeString(AParcel* parcel,
                                           const std::optional<std::string>& string) {
    int32_t length = 0;
    const char* data = internal::StringData(string, &length);
    return ::AParcel_writeString(parcel, data, length);
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

}  // namespace ndk
