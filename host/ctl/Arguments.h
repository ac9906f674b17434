#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zarvo::host::ctl {

/** One option of a command. */
struct Option {
    /** With its dashes. */
    std::string_view name;
    /** What stands for its value in the help; empty if it has none. */
    std::string_view value;
    std::string_view help;
};

/** What stands behind a command's name on the command line. */
class Arguments {
  public:
    /** Reads `--name value`, `--name=value` and words. A pure function; see Error(). */
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

  private:
    std::optional<int64_t> Parse(std::string_view text, std::string_view what, int64_t least,
                                 int64_t most);

    std::map<std::string_view, std::string_view> mValues;
    std::vector<std::string_view> mWords;
    std::string mError;
};

}  // namespace zarvo::host::ctl
