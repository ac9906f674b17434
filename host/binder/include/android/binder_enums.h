/** Iteration over the enumerators of an AIDL enum. */
#pragma once

#include <iterator>
#include <type_traits>

namespace ndk {

namespace internal {

/** Has no definition: stands where an enum has no list of its values. */
template <typename T>
struct invalid_type;

/** Generated code specialises this for each enum with a std::array of its values. */
template <typename EnumType, typename = std::enable_if_t<std::is_enum<EnumType>::value>>
constexpr invalid_type<EnumType> enum_values;

}  // namespace internal

/** The values of an AIDL enum in the order of declaration: `for (E e : ndk::enum_range<E>())`. */
template <typename EnumType, typename = std::enable_if_t<std::is_enum<EnumType>::value>>
struct enum_range {
    constexpr auto begin() const { return std::begin(internal::enum_values<EnumType>); }
    constexpr auto end() const { return std::end(internal::enum_values<EnumType>); }
};

}  // namespace ndk
