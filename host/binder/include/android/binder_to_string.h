/** Text for the values of AIDL types, as generated toString() methods print them. */
#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace android::internal {

template <typename T>
std::string ToString(const T& value);

namespace details {

template <typename T, typename = void>
struct HasToStringMethod : std::false_type {};
template <typename T>
struct HasToStringMethod<T, std::void_t<decltype(std::declval<const T&>().toString())>>
    : std::true_type {};

template <typename T, typename = void>
struct HasToStringFunction : std::false_type {};
template <typename T>
struct HasToStringFunction<T, std::void_t<decltype(toString(std::declval<const T&>()))>>
    : std::true_type {};

template <typename T, typename = void>
struct IsRange : std::false_type {};
template <typename T>
struct IsRange<T, std::void_t<decltype(std::begin(std::declval<const T&>())),
                              decltype(std::end(std::declval<const T&>()))>> : std::true_type {};

// Pointers, raw or smart, and optionals.
template <typename T, typename = void>
struct IsNullable : std::false_type {};
template <typename T>
struct IsNullable<T, std::void_t<decltype(static_cast<bool>(std::declval<const T&>())),
                                 decltype(*std::declval<const T&>())>> : std::true_type {};

template <typename Range>
std::string RangeToString(const Range& range) {
    std::string text = "[";
    const char* separator = "";
    for (const auto& element : range) {
        text.append(separator).append(ToString(element));
        separator = ", ";
    }
    return text.append("]");
}

template <typename T>
std::string NumberToString(T value) {
    if constexpr (std::is_enum_v<T>) {
        return NumberToString(static_cast<std::underlying_type_t<T>>(value));
    } else {
        return std::to_string(+value);  // + turns characters into numbers
    }
}

}  // namespace details

/**
 * bool gives "true" or "false"; numbers their decimal form, with six decimals for float and double;
 * strings themselves; ranges "[a, b]"; null pointers and empty optionals "(null)", others what they
 * hold; types with toString(), as a member or beside the type, what that returns; enums without it
 * their number. Anything else is an "(object)".
 */
template <typename T>
std::string ToString(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        if constexpr (std::is_pointer_v<T>) {
            if (value == nullptr) return "(null)";
        }
        return std::string(std::string_view(value));
    } else if constexpr (details::HasToStringMethod<T>::value) {
        return value.toString();
    } else if constexpr (details::HasToStringFunction<T>::value) {
        return toString(value);
    } else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>) {
        return details::NumberToString(value);
    } else if constexpr (details::IsRange<T>::value) {
        return details::RangeToString(value);
    } else if constexpr (details::IsNullable<T>::value) {
        return value ? ToString(*value) : "(null)";
    } else {
        return "(object)";
    }
}

}  // namespace android::internal
