#include "host/aidl/Text.h"

namespace zarvo::host::aidl {

namespace {

/** Appends what a placeholder, given without its ${}, stands for. */
void AppendReplacement(std::string& result, std::string_view name,
                       std::initializer_list<Replacement> replacements) {
    for (const Replacement& replacement : replacements) {
        if (replacement.first == name) {
            result.append(replacement.second);
            return;
        }
    }
    result.append("${").append(name).append("}");
}

}  // namespace

std::string Fill(std::string_view text, std::initializer_list<Replacement> replacements) {
    std::string result;
    for (size_t start = text.find("${"); start != std::string_view::npos; start = text.find("${")) {
        const size_t end = text.find('}', start);
        if (end == std::string_view::npos) break;
        result.append(text.substr(0, start));
        AppendReplacement(result, text.substr(start + 2, end - start - 2), replacements);
        text.remove_prefix(end + 1);
    }
    return result.append(text);
}

void AppendSeparated(std::string& text, std::string_view separator, std::string_view next) {
    if (!text.empty()) text.append(separator);
    text.append(next);
}

}  // namespace zarvo::host::aidl
