#include "host/programs/Arguments.h"

#include <algorithm>
#include <charconv>

namespace zarvo::host {
namespace {

bool LooksLikeOption(std::string_view word) {
    const bool isNumber = word.size() > 1 && word[1] >= '0' && word[1] <= '9';
    return word.size() > 1 && word[0] == '-' && !isNumber;
}

}  // namespace

Arguments::Arguments(std::span<const std::string_view> words, std::span<const Option> options) {
    while (!words.empty()) {
        const std::string_view word = words.front();
        words = words.subspan(1);
        if (word == "--") {
            mWords.insert(mWords.end(), words.begin(), words.end());
            return;
        }
        if (LooksLikeOption(word))
            Take(word, options, words);
        else
            mWords.push_back(word);
    }
}

Arguments Arguments::Unread(std::span<const std::string_view> words) {
    Arguments arguments;
    arguments.mWords.assign(words.begin(), words.end());
    return arguments;
}

void Arguments::Take(std::string_view word, std::span<const Option> options,
                     std::span<const std::string_view>& rest) {
    const size_t equals = word.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view name = word.substr(0, equals);
    const auto option = std::find_if(options.begin(), options.end(),
                                     [&](const Option& known) { return known.name == name; });
    if (word == "--help" || word == "-h") {
        mValues["--help"] = {};
    } else if (option == options.end()) {
        SetError("unknown option " + std::string(name));
    } else if (option->value.empty() && hasValue) {
        SetError(std::string(name) + " takes no value");
    } else if (option->value.empty() || hasValue) {
        mValues[name] = hasValue ? word.substr(equals + 1) : std::string_view();
    } else if (rest.empty()) {
        SetError(std::string(name) + " wants " + std::string(option->value));
    } else {
        mValues[name] = rest.front();
        rest = rest.subspan(1);
    }
}

void Arguments::SetError(std::string error) {
    // The first one is what the reader has to mend.
    if (mError.empty()) mError = std::move(error);
}

std::string_view Arguments::Value(std::string_view option, std::string_view otherwise) const {
    const auto value = mValues.find(option);
    return value == mValues.end() ? otherwise : value->second;
}

int64_t Arguments::Number(std::string_view option, int64_t otherwise, int64_t least, int64_t most) {
    if (!Has(option)) return otherwise;
    return Parse(Value(option), option, least, most).value_or(otherwise);
}

int64_t Arguments::NumberAt(size_t index, std::string_view what, int64_t least, int64_t most) {
    if (index < mWords.size()) return Parse(mWords[index], what, least, most).value_or(least);
    SetError(std::string(what) + " is missing");
    return least;
}

std::optional<int64_t> Arguments::Parse(std::string_view text, std::string_view what, int64_t least,
                                        int64_t most) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && number >= least &&
        number <= most) {
        return number;
    }
    const std::string range =
            most == INT64_MAX ? "of at least " + std::to_string(least)
                              : "from " + std::to_string(least) + " to " + std::to_string(most);
    SetError(std::string(what) + " wants a number " + range + ", not '" + std::string(text) + "'");
    return std::nullopt;
}

}  // namespace zarvo::host
