#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zarvo::host {

/** Bytes that come in pieces, given back as lines. */
class LineBuffer {
  public:
    void Append(std::string_view bytes) { mBytes.append(bytes); }
    /** The next whole line, without its end; also a part of one that is far too long. */
    std::optional<std::string> Next();

  private:
    static constexpr size_t kLongest = 1U << 16U;

    std::string mBytes;
};

/** Takes the first word and the space behind it off the text. */
std::string_view TakeWord(std::string_view& text);
/** The whole text as a decimal number. */
std::optional<int64_t> ParseNumber(std::string_view text);

}  // namespace zarvo::host
