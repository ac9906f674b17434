#include "host/aidl/Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace zarvo::host::aidl {

const std::string_view kUsage =
        R"(usage:
  aidl-ndk --lang=ndk --structured [--stability vintf] [--version N] [--hash HASH]
           [--min_sdk_version=N] [-I ROOT]... -h HEADER_FOLDER -o SOURCE_FOLDER FILE...
  aidl-ndk --dumpapi --structured [--stability vintf] [-I ROOT]... --out=FOLDER FILE...
  aidl-ndk --checkapi=equal|compatible --structured [--stability vintf] [-I ROOT]...
           OLDER_FOLDER NEWER_FOLDER
  aidl-ndk --hashapi [--version N] FOLDER
)";

namespace {

constexpr uint32_t kLowestSdk = 30;

/** What is wrong, or nothing. */
using Complaint = std::optional<std::string>;
using Setter = Complaint (*)(Options&, std::string_view value);

Complaint Expect(bool condition, std::string_view text) {
    return condition ? std::nullopt : Complaint(text);
}

std::optional<uint32_t> ParseNumber(std::string_view text) {
    uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

Complaint SetLanguage(Options&, std::string_view value) {
    return Expect(value == "ndk", "the only language is ndk");
}

Complaint SetStability(Options& options, std::string_view value) {
    options.vintfStability = true;
    return Expect(value == "vintf", "the only stability is vintf");
}

Complaint SetVersion(Options& options, std::string_view value) {
    options.version = ParseNumber(value).value_or(0);
    return Expect(options.version >= 1 && options.version <= INT32_MAX,
                  "--version takes a number from 1 on");
}

Complaint SetHash(Options& options, std::string_view value) {
    options.hash = value;
    const bool digits = value.size() == 40 &&
                        value.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    return Expect(digits || value == "notfrozen",
                  "--hash takes 40 lower-case hexadecimal digits or notfrozen");
}

Complaint CheckMinSdk(Options&, std::string_view value) {
    const std::optional<uint32_t> number = ParseNumber(value);
    return Expect(value == "current" || (number && *number >= kLowestSdk),
                  "--min_sdk_version takes 30 or more, or current");
}

Complaint SetCheckLevel(Options& options, std::string_view value) {
    options.mode = Options::Mode::kCheckApi;
    options.checkLevel = value == "compatible" ? ApiCheckLevel::kCompatible : ApiCheckLevel::kEqual;
    return Expect(value == "compatible" || value == "equal",
                  "--checkapi takes equal or compatible");
}

Complaint SetDump(Options& options, std::string_view) {
    options.mode = Options::Mode::kDumpApi;
    return {};
}

Complaint SetHashApi(Options& options, std::string_view) {
    options.mode = Options::Mode::kHashApi;
    return {};
}

Complaint SetStructured(Options& options, std::string_view) {
    options.structured = true;
    return {};
}

Complaint AddRoot(Options& options, std::string_view value) {
    options.importRoots.emplace_back(value);
    return {};
}

template <std::string Options::*Folder>
Complaint SetFolder(Options& options, std::string_view value) {
    options.*Folder = value;
    return Expect(!value.empty(), "a folder's name is empty");
}

enum class Takes { kNothing, kValue };

struct Row {
    std::string_view name;
    Takes takes;
    Setter set;
};

constexpr std::array<Row, 13> kRows = {{{"--lang", Takes::kValue, SetLanguage},
                                        {"--structured", Takes::kNothing, SetStructured},
                                        {"--stability", Takes::kValue, SetStability},
                                        {"--version", Takes::kValue, SetVersion},
                                        {"--hash", Takes::kValue, SetHash},
                                        {"--min_sdk_version", Takes::kValue, CheckMinSdk},
                                        {"--dumpapi", Takes::kNothing, SetDump},
                                        {"--checkapi", Takes::kValue, SetCheckLevel},
                                        {"--hashapi", Takes::kNothing, SetHashApi},
                                        {"--out", Takes::kValue, SetFolder<&Options::dumpFolder>},
                                        {"-I", Takes::kValue, AddRoot},
                                        {"-h", Takes::kValue, SetFolder<&Options::headerFolder>},
                                        {"-o", Takes::kValue, SetFolder<&Options::sourceFolder>}}};

/** An argument cut into the option's name and the value that is joined to it, if there is one. */
std::pair<std::string_view, std::optional<std::string_view>> Split(std::string_view argument) {
    if (!argument.starts_with("--")) {
        if (argument.size() <= 2) return {argument, std::nullopt};
        return {argument.substr(0, 2), argument.substr(2)};
    }
    const size_t equals = argument.find('=');
    if (equals == std::string_view::npos) return {argument, std::nullopt};
    return {argument.substr(0, equals), argument.substr(equals + 1)};
}

/** Takes one option, and its value if that is an argument of its own, from the front. */
Complaint TakeOption(Options& options, std::span<const std::string_view>& arguments) {
    auto [name, value] = Split(arguments.front());
    arguments = arguments.subspan(1);
    const auto row = std::find_if(kRows.begin(), kRows.end(),
                                  [name = name](const Row& r) { return r.name == name; });
    if (row == kRows.end()) return "unknown option " + std::string(name);
    if (row->takes == Takes::kNothing) {
        if (value) return std::string(name) + " takes no value";
        return row->set(options, {});
    }
    if (!value) {
        if (arguments.empty()) return std::string(name) + " needs a value";
        value = arguments.front();
        arguments = arguments.subspan(1);
    }
    return row->set(options, *value);
}

Complaint CheckGenerate(const Options& options) {
    if (options.headerFolder.empty()) return "-h is missing";
    return Expect(!options.sourceFolder.empty(), "-o is missing");
}

Complaint CheckComplete(const Options& options) {
    using Mode = Options::Mode;
    if (options.files.empty()) return "no files are given";
    if (options.mode == Mode::kHashApi) {
        return Expect(options.files.size() == 1, "--hashapi takes one folder");
    }
    if (!options.structured) return "--structured is missing: there are only structured types";
    if (options.mode == Mode::kCheckApi) {
        return Expect(options.files.size() == 2, "--checkapi takes two folders");
    }
    if (options.mode == Mode::kDumpApi) {
        return Expect(!options.dumpFolder.empty(), "--out is missing");
    }
    return CheckGenerate(options);
}

}  // namespace

std::variant<Options, std::string> ParseOptions(std::span<const std::string_view> arguments) {
    Options options;
    Complaint complaint;
    while (!arguments.empty() && !complaint) {
        const std::string_view argument = arguments.front();
        if (argument.size() > 1 && argument.starts_with('-')) {
            complaint = TakeOption(options, arguments);
        } else {
            options.files.emplace_back(argument);
            arguments = arguments.subspan(1);
        }
    }
    if (!complaint) complaint = CheckComplete(options);
    if (complaint) return *complaint;
    return options;
}

}  // namespace zarvo::host::aidl
