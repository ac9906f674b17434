/**
 * Vectors and fixed-size arrays, which may be null inside an optional, as the C array functions
 * want them. Internal to the binder_*_utils.h headers.
 *
 * A Sequence is a std::vector, a std::array or an optional of one of them.
 */
#pragma once

#include <android/binder_internal_parcel_types.h>

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace ndk::internal {

/** The elements of a sequence that is not null. */
template <typename Sequence>
auto& ElementsOf(Sequence& sequence) {
    if constexpr (kIsOf<std::remove_const_t<Sequence>, std::optional>) {
        return *sequence;
    } else {
        return sequence;
    }
}

template <typename Sequence>
using ElementType =
        typename std::decay_t<decltype(ElementsOf(std::declval<Sequence&>()))>::value_type;

template <typename Sequence>
bool IsNull(const Sequence& sequence) {
    if constexpr (kIsOf<Sequence, std::optional>) {
        return !sequence.has_value();
    } else {
        return false;
    }
}

/** The length to write, -1 for null; false if it does not fit. */
template <typename Sequence>
bool LengthOf(const Sequence& sequence, int32_t* length) {
    *length = -1;
    if (IsNull(sequence)) return true;
    const std::size_t size = ElementsOf(sequence).size();
    if (size > INT32_MAX) return false;
    *length = static_cast<int32_t>(size);
    return true;
}

/** Makes the sequence null (-1) or gives it `length` elements; false if it cannot be so. */
template <typename Sequence>
bool Resize(Sequence* sequence, int32_t length) {
    if constexpr (kIsOf<Sequence, std::optional>) {
        sequence->reset();
        return length == -1 || Resize(&sequence->emplace(), length);
    } else if constexpr (kIsFixedArray<Sequence>) {
        return length >= 0 && static_cast<std::size_t>(length) == sequence->size();
    } else {
        if (length < 0) return false;
        sequence->resize(static_cast<std::size_t>(length));
        return true;
    }
}

/**
 * As Resize, but a vector is left empty for Grow(): its elements take far more memory than a
 * hostile parcel needs to announce them, so they are made only as they arrive.
 */
template <typename Sequence>
bool Prepare(void* arrayData, int32_t length) {
    auto* sequence = static_cast<Sequence*>(arrayData);
    constexpr bool grows = kIsOf<std::decay_t<decltype(ElementsOf(*sequence))>, std::vector>;
    if constexpr (grows) {
        return Resize(sequence, length > 0 ? 0 : length);
    } else {
        return Resize(sequence, length);
    }
}

/** Element `index` of a sequence that was prepared; the elements come in order. */
template <typename Sequence>
auto& Grow(void* arrayData, std::size_t index) {
    auto& elements = ElementsOf(*static_cast<Sequence*>(arrayData));
    if constexpr (kIsOf<std::decay_t<decltype(elements)>, std::vector>) {
        if (elements.size() <= index) elements.resize(index + 1);
    }
    return elements[index];
}

template <typename Sequence>
const auto& ElementAt(const void* arrayData, std::size_t index) {
    return ElementsOf(*static_cast<const Sequence*>(arrayData))[index];
}

// ---- the callbacks of the C array functions

template <typename Sequence>
bool AllocateNumbers(void* arrayData, int32_t length, WireType<ElementType<Sequence>>** outBuffer) {
    auto* sequence = static_cast<Sequence*>(arrayData);
    if (!Resize(sequence, length)) return false;
    *outBuffer = nullptr;
    if (length > 0) {
        *outBuffer =
                reinterpret_cast<WireType<ElementType<Sequence>>*>(ElementsOf(*sequence).data());
    }
    return true;
}

template <typename Sequence>
bool AllocateBools(void* arrayData, int32_t length) {
    return Resize(static_cast<Sequence*>(arrayData), length);
}

template <typename Sequence>
bool GetBool(const void* arrayData, std::size_t index) {
    return ElementsOf(*static_cast<const Sequence*>(arrayData))[index];
}

template <typename Sequence>
void SetBool(void* arrayData, std::size_t index, bool value) {
    ElementsOf(*static_cast<Sequence*>(arrayData))[index] = value;
}

/** Room in a std::string or an optional one; the length counts the NUL, -1 is null. */
template <typename String>
bool AllocateString(String* string, int32_t length, char** buffer) {
    if constexpr (kIsOf<String, std::optional>) {
        string->reset();
        return length == -1 || AllocateString(&string->emplace(), length, buffer);
    } else {
        if (length < 1) return false;
        string->resize(static_cast<std::size_t>(length) - 1);
        *buffer = string->data();
        return true;
    }
}

template <typename String>
bool AllocateStringData(void* stringData, int32_t length, char** buffer) {
    return AllocateString(static_cast<String*>(stringData), length, buffer);
}

template <typename Sequence>
bool AllocateStringElement(void* arrayData, std::size_t index, int32_t length, char** buffer) {
    return AllocateString(&Grow<Sequence>(arrayData, index), length, buffer);
}

/** The bytes and their number; an impossible number, which writers refuse, if it does not fit. */
inline const char* StringData(const std::string& string, int32_t* length) {
    constexpr int32_t kTooLong = -2;
    *length = string.size() <= INT32_MAX ? static_cast<int32_t>(string.size()) : kTooLong;
    return string.data();
}

/** The same, and null with -1. */
inline const char* StringData(const std::optional<std::string>& string, int32_t* length) {
    *length = -1;
    return string.has_value() ? StringData(*string, length) : nullptr;
}

template <typename Sequence>
const char* GetStringElement(const void* arrayData, std::size_t index, int32_t* outLength) {
    return StringData(ElementAt<Sequence>(arrayData, index), outLength);
}

}  // namespace ndk::internal
