#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace zarvo::host::aidl {

/** One placeholder of a template, and what it stands for. */
using Replacement = std::pair<std::string_view, std::string_view>;

/**
 * The template with each ${name} replaced by the text given for that name. A name that is not
 * given stays as it is. Replacements are not searched for placeholders again.
 */
std::string Fill(std::string_view text, std::initializer_list<Replacement> replacements);

/** Joins two texts with `separator`, or gives `next` if `text` is empty. */
void AppendSeparated(std::string& text, std::string_view separator, std::string_view next);

}  // namespace zarvo::host::aidl
