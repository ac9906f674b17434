#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host {

/** One option of a command. */
struct Option {
    /** With its dashes. */
    std::string_view name;
    /** What stands for its value in the help; empty if it has none. */
    std::string_view value;
    std::string_view help;
    /** The words that its value may be, or be made of, with spaces; empty if there is no end. */
    std::string_view choices = {};
};

/** What stands behind a program's or a command's name on the command line. */
class Arguments {
  public:
    /**
     * Reads options and words in any order; behind `--` there are only words, and a negative number
     * is one. A pure function; see Error().
     */
    Arguments(std::span<const std::string_view> words, std::span<const Option> options);

    /** What is wrong with the command line; empty when nothing is. */
    const std::string& Error() const { return mError; }
    void SetError(std::string error);

    bool Has(std::string_view option) const { return mValues.contains(option); }
    /** The option's value, or this one if it is not there. */
    std::string_view Value(std::string_view option, std::string_view otherwise = {}) const;
    /** The option's value as a number in the range; else the one given, and an error. */
    int64_t Number(std::string_view option, int64_t otherwise, int64_t least, int64_t most);
    /** A word as a number in the range; else `least`, and an error. */
    int64_t NumberAt(size_t index, std::string_view what, int64_t least, int64_t most);
    const std::vector<std::string_view>& Words() const { return mWords; }
    /** `--help` or `-h` is among the options; whatever else there is does not matter then. */
    bool WantsHelp() const { return Has("--help"); }
    /** All of them are words. */
    static Arguments Unread(std::span<const std::string_view> words);

  private:
    Arguments() = default;
    /** Takes one option, and its value, if it is not there yet, from the front of the rest. */
    void Take(std::string_view word, std::span<const Option> options,
              std::span<const std::string_view>& rest);
    std::optional<int64_t> Parse(std::string_view text, std::string_view what, int64_t least,
                                 int64_t most);

    std::map<std::string_view, std::string_view> mValues;
    std::vector<std::string_view> mWords;
    std::string mError;
};

}  // namespace zarvo::host
