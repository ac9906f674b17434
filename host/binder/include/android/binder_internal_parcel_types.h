/** How C++ types travel in parcels. Internal to the binder_*_utils.h headers. */
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_interface_utils.h>
#include <android/binder_parcel.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace ndk::internal {

template <typename T>
inline constexpr bool kUnsupported = false;

template <typename T, template <typename...> class Template>
inline constexpr bool kIsOf = false;
template <template <typename...> class Template, typename... Args>
inline constexpr bool kIsOf<Template<Args...>, Template> = true;

template <typename T>
inline constexpr bool kIsFixedArray = false;
template <typename T, std::size_t N>
inline constexpr bool kIsFixedArray<std::array<T, N>> = true;

/** What travels as a counted sequence: a vector or a fixed-size array. */
template <typename T>
inline constexpr bool kIsSequence = kIsOf<T, std::vector> || kIsFixedArray<T>;

/** A shared_ptr to an AIDL interface. */
template <typename T>
inline constexpr bool kIsInterface = false;
template <typename I>
inline constexpr bool kIsInterface<std::shared_ptr<I>> = std::is_base_of_v<ICInterface, I>;

/** A class that writes and reads its own body: a parcelable or a union. */
template <typename T, typename = void>
inline constexpr bool kIsParcelable = false;
template <typename T>
inline constexpr bool kIsParcelable<
        T,
        std::void_t<decltype(std::declval<const T&>().writeToParcel(std::declval<AParcel*>())),
                    decltype(std::declval<T&>().readFromParcel(std::declval<const AParcel*>()))>> =
        true;

/** optional or unique_ptr: null is a value of the type and not of what it holds. */
template <typename T>
inline constexpr bool kIsNullable = kIsOf<T, std::optional> || kIsOf<T, std::unique_ptr>;

/** Number types with C functions of their own; X(type, name in those functions). */
#define NDK_INTERNAL_NUMBERS(X) \
    X(int32_t, Int32)           \
    X(uint32_t, Uint32)         \
    X(int64_t, Int64)           \
    X(uint64_t, Uint64)         \
    X(float, Float)             \
    X(double, Double)           \
    X(char16_t, Char)           \
    X(int8_t, Byte)

// NOLINTBEGIN(bugprone-macro-parentheses): a type takes none
#define NDK_INTERNAL_OVERLOADS(TYPE, NAME)                                                   \
    inline binder_status_t WriteNumber(AParcel* parcel, TYPE value) {                        \
        return AParcel_write##NAME(parcel, value);                                           \
    }                                                                                        \
    inline binder_status_t ReadNumber(const AParcel* parcel, TYPE* value) {                  \
        return AParcel_read##NAME(parcel, value);                                            \
    }                                                                                        \
    inline binder_status_t WriteNumbers(AParcel* parcel, const TYPE* data, int32_t length) { \
        return AParcel_write##NAME##Array(parcel, data, length);                             \
    }                                                                                        \
    inline binder_status_t ReadNumbers(const AParcel* parcel, void* sequence,                \
                                       bool (*allocate)(void*, int32_t, TYPE**)) {           \
        return AParcel_read##NAME##Array(parcel, sequence, allocate);                        \
    }
// NOLINTEND(bugprone-macro-parentheses)
NDK_INTERNAL_NUMBERS(NDK_INTERNAL_OVERLOADS)
#undef NDK_INTERNAL_OVERLOADS

#define NDK_INTERNAL_OR_SAME(TYPE, NAME) || std::is_same_v<T, TYPE>
template <typename T>
// NOLINTNEXTLINE(readability-simplify-boolean-expr): begins a list of alternatives
inline constexpr bool kIsNumber = false NDK_INTERNAL_NUMBERS(NDK_INTERNAL_OR_SAME);
#undef NDK_INTERNAL_OR_SAME
#undef NDK_INTERNAL_NUMBERS

template <typename T>
auto WireTypeOf() {
    if constexpr (std::is_enum_v<T>) {
        return WireTypeOf<std::underlying_type_t<T>>();
    } else if constexpr (std::is_same_v<T, uint8_t>) {
        return int8_t{};
    } else if constexpr (kIsNumber<T>) {
        return T{};
    }
}

/** The number type as which T travels (enums as their underlying type); void if as none. */
template <typename T>
using WireType = decltype(WireTypeOf<T>());

template <typename T>
inline constexpr bool kIsNumeric = !std::is_void_v<WireType<T>>;

}  // namespace ndk::internal
