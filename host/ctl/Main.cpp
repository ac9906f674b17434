#include <cstdio>
#include <vector>

#include "host/ctl/Command.h"

namespace {

using namespace zarvo::host::ctl;

int Misuse(const std::string& error, std::string_view command = {}) {
    std::fprintf(stderr, "aonctl: %s\n", error.c_str());
    std::fprintf(stderr, "Try 'aonctl %.*s%s--help'.\n", static_cast<int>(command.size()),
                 command.data(), command.empty() ? "" : " ");
    return kMisused;
}

int Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    return kDone;
}

int Run(const Command& command, std::span<const std::string_view> words) {
    for (const std::string_view word : words)
        if (word == "--help" || word == "-h") return Print(CommandHelp(command));
    const std::vector<Option> options = command.AllOptions();
    Arguments arguments(words, options);
    const size_t count = arguments.Words().size();
    if (count < command.leastWords) arguments.SetError("something is missing");
    if (count > command.mostWords) {
        arguments.SetError("too much: " + std::string(arguments.Words()[command.mostWords]));
    }
    if (!arguments.Error().empty()) return Misuse(arguments.Error(), command.name);
    const int status = command.run(arguments);
    return status == kMisused ? Misuse(arguments.Error(), command.name) : status;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    if (words.empty()) return Misuse("what shall be done?");
    if (words[0] == "--help" || words[0] == "-h" || words[0] == "help") return Print(ProgramHelp());
    if (words[0] == "--version") return Print("aonctl " AON_VERSION "\n");
    const Command* const command = FindCommand(words[0]);
    if (command == nullptr) return Misuse("there is no command " + std::string(words[0]));
    return Run(*command, std::span(words).subspan(1));
}
