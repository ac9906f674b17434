#include "host/cutils/PropertyParser.h"

#include <algorithm>

namespace zarvo::host {
namespace {

bool IsNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_.-@:").find(c) != std::string_view::npos;
}

bool IsName(std::string_view name) {
    return !name.empty() && name.front() != '.' && name.back() != '.' &&
           name.find("..") == std::string_view::npos &&
           std::all_of(name.begin(), name.end(), IsNameCharacter);
}

void ParsePair(std::string_view pair, size_t number, ParsedProperties& parsed) {
    const size_t equals = pair.find('=');
    const std::string_view name = pair.substr(0, equals);
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view value = hasValue ? pair.substr(equals + 1) : std::string_view();
    const char* fault = hasValue ? PropertyFault(name, value) : "no '='";
    if (fault == nullptr) {
        parsed.properties.push_back({std::string(name), std::string(value)});
    } else {
        parsed.errors.push_back("pair " + std::to_string(number) + ": " + fault);
    }
}

}  // namespace

const char* PropertyFault(std::string_view name, std::string_view value) {
    if (name.size() > kMaxPropertyName) return "name too long";
    if (!IsName(name)) return "not a property name";
    if (value.size() > kMaxPropertyValue) return "value too long";
    if (value.find('\0') != std::string_view::npos) return "zero byte in value";
    return nullptr;
}

ParsedProperties ParseProperties(std::string_view text) {
    ParsedProperties parsed;
    for (size_t number = 1; !text.empty(); ++number) {
        const std::string_view pair = text.substr(0, text.find(';'));
        if (!pair.empty()) ParsePair(pair, number, parsed);
        text.remove_prefix(std::min(pair.size() + 1, text.size()));
    }
    return parsed;
}

}  // namespace zarvo::host
