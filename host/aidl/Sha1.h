#pragma once

#include <string>
#include <string_view>

namespace zarvo::host::aidl {

/** The SHA-1 digest of the bytes, as 40 lower-case hexadecimal digits. */
std::string Sha1Hex(std::string_view bytes);

}  // namespace zarvo::host::aidl
