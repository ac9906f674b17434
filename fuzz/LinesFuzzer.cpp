// What the demo's processes say to each other: pieces of bytes become lines, none of them lost, and
// lines words and numbers.

#include <cstdlib>
#include <string>

#include "fuzz/Input.h"
#include "host/demo/Narrator.h"
#include "host/programs/Lines.h"

namespace {

using namespace zarvo::host;

void Read(std::string_view line) {
    static demo::Narrator narrator;
    narrator.Log(line);
    while (!line.empty()) {
        const size_t before = line.size();
        const std::string_view word = TakeWord(line);
        const auto number = ParseNumber(word);
        if (number && *number == 0 && word.find_first_not_of("-0") != std::string_view::npos)
            std::abort();
        if (line.size() >= before) std::abort();
    }
}

}  // namespace

/** The input is pieces of bytes as they come. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zarvo::fuzz::Input input(data, size);
    LineBuffer buffer;
    std::string said;
    size_t read = 0;
    while (!input.IsEmpty()) {
        const std::string_view piece = zarvo::fuzz::Text(input.TakeBytes(input.Take<uint8_t>()));
        said += piece;
        buffer.Append(piece);
        while (const auto line = buffer.Next()) {
            read += line->size() + 1;
            Read(*line);
        }
    }
    const size_t whole = said.rfind('\n') == std::string::npos ? 0 : said.rfind('\n') + 1;
    if (read != whole) std::abort();
    return 0;
}
