#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host::aidl {

/**
 * What an API dump keeps of the comments in front of a member: a block comment with the @hide
 * and @deprecated tags of the last one, or nothing.
 */
std::string FindRemark(const std::vector<std::string_view>& comments);

}  // namespace zarvo::host::aidl
