#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zarvo::host {

/**
 * UTF-8 as UTF-16. Nothing for bytes that are not the shortest form of a code point up to 10FFFF;
 * a surrogate in three bytes is allowed and becomes a unit of its own.
 */
std::optional<std::u16string> Utf8ToUtf16(std::string_view utf8);

/**
 * `count` units of two little-endian bytes each, anywhere in memory, as UTF-8. A surrogate without
 * its other half becomes three bytes. Utf16ToUtf8 writes just Utf8Length bytes and no NUL.
 */
size_t Utf8Length(const uint8_t* units, size_t count);
void Utf16ToUtf8(const uint8_t* units, size_t count, char* utf8);

}  // namespace zarvo::host
