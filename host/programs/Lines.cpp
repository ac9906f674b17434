#include "host/programs/Lines.h"

#include <algorithm>
#include <charconv>

namespace zarvo::host {

std::optional<std::string> LineBuffer::Next() {
    const size_t end = mBytes.find('\n');
    if (end == std::string::npos && mBytes.size() < kLongest) return std::nullopt;
    const size_t length = std::min(end, kLongest);
    std::string line = mBytes.substr(0, length);
    mBytes.erase(0, length == end ? length + 1 : length);
    return line;
}

std::string_view TakeWord(std::string_view& text) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

std::optional<int64_t> ParseNumber(std::string_view text) {
    int64_t number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc() || end != last) return std::nullopt;
    return number;
}

}  // namespace zarvo::host
