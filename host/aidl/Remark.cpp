#include "host/aidl/Remark.h"

namespace zarvo::host::aidl {

namespace {

/** What stands between words, the stars in front of a comment's lines included. */
constexpr std::string_view kBetween = " \t\r\n*";

/** Takes the first word from the front of `text`; empty if there is none. */
std::string_view TakeWord(std::string_view& text) {
    const size_t start = text.find_first_not_of(kBetween);
    if (start == std::string_view::npos) return {};
    text.remove_prefix(start);
    const std::string_view word = text.substr(0, text.find_first_of(kBetween));
    text.remove_prefix(word.size());
    return word;
}

}  // namespace

std::string FindRemark(const std::vector<std::string_view>& comments) {
    if (comments.empty() || comments.back().size() < 4) return {};
    std::string_view body = comments.back().substr(2, comments.back().size() - 4);
    std::string tags;
    bool keep = false;
    for (std::string_view word = TakeWord(body); !word.empty(); word = TakeWord(body)) {
        if (word.starts_with('@')) keep = word == "@deprecated";
        if (keep || word == "@hide") tags.append(" ").append(word);
    }
    return tags.empty() ? std::string() : "/*" + tags + " */";
}

}  // namespace zarvo::host::aidl
