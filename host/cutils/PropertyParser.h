#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host {

/** Longest property name, in bytes. */
inline constexpr size_t kMaxPropertyName = 255;
/** Longest property value, in bytes. */
inline constexpr size_t kMaxPropertyValue = 91;

/** One property with its value. */
struct Property {
    std::string name;
    std::string value;
};

/** What a list of properties came to: the good pairs in order, and a line for each bad one. */
struct ParsedProperties {
    std::vector<Property> properties;
    std::vector<std::string> errors;
};

/** Why `name=value` cannot be a property; null when it can. */
[[gnu::visibility("default")]] const char* PropertyFault(std::string_view name,
                                                         std::string_view value);

/**
 * Reads `name=value;name=value;…`. Empty pieces are skipped, so a closing semicolon does no harm;
 * a malformed pair is left out and reported by its number, counted from 1. The value begins after
 * the first equals sign. Any bytes may come in; a pure function.
 */
[[gnu::visibility("default")]] ParsedProperties ParseProperties(std::string_view text);

}  // namespace zarvo::host
