#include "host/aidl/Remark.h"

namespace zarvo::host::aidl {

namespace {

constexpr std::string_view kBlanks = " \t\r\n*";

bool IsWordEnd(std::string_view text) {
    return text.empty() || kBlanks.find(text.front()) != std::string_view::npos;
}

/** Joins the words of `text` up to the next tag with single blanks. */
std::string Words(std::string_view text) {
    std::string words;
    for (size_t start = text.find_first_not_of(kBlanks); start != std::string_view::npos;
         start = text.find_first_not_of(kBlanks)) {
        text.remove_prefix(start);
        if (text.front() == '@') break;
        const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
        words.append(" ").append(word);
        text.remove_prefix(word.size());
    }
    return words;
}

}  // namespace

std::string FindRemark(const std::vector<std::string_view>& comments) {
    if (comments.empty() || comments.back().size() < 4) return {};
    const std::string_view body = comments.back().substr(2, comments.back().size() - 4);
    std::string tags;
    for (size_t at = body.find('@'); at != std::string_view::npos; at = body.find('@', at + 1)) {
        constexpr std::string_view kHide = "@hide";
        constexpr std::string_view kDeprecated = "@deprecated";
        const std::string_view rest = body.substr(at);
        if (rest.starts_with(kHide) && IsWordEnd(rest.substr(kHide.size()))) {
            tags += " @hide";
        } else if (rest.starts_with(kDeprecated) && IsWordEnd(rest.substr(kDeprecated.size()))) {
            tags += " @deprecated" + Words(rest.substr(kDeprecated.size()));
        }
    }
    return tags.empty() ? std::string() : "/*" + tags + " */";
}

}  // namespace zarvo::host::aidl
