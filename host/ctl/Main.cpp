#include <cstdio>
#include <vector>

#include "host/ctl/Command.h"
#include "host/ctl/Output.h"

namespace zarvo::host::ctl {
namespace {

using Words = std::span<const std::string_view>;

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

Arguments Read(const Command& command, Words words) {
    const bool justHelp = words.size() == 1 && words[0] == "--help";
    if (command.passesAllOn && !justHelp) return Arguments::Unread(words);
    return {words, command.AllOptions()};
}

int Run(const Command& command, Words words) {
    Arguments arguments = Read(command, words);
    if (arguments.WantsHelp()) return Print(CommandHelp(command));
    CheckWords(command, arguments);
    if (!arguments.Error().empty()) return Misuse(arguments.Error(), command.name);
    const int status = command.run(arguments);
    return status == kMisused ? Misuse(arguments.Error(), command.name) : status;
}

int Run(Words words) {
    if (words.empty()) return Misuse("what shall be done?");
    const std::string_view first = words[0];
    if (first == "--help" || first == "-h") return Print(ProgramHelp());
    if (first == "--version") return Print("aonctl " AON_VERSION "\n");
    // For the shells' completion.
    if (first == "--complete") return Print(Completions(words.subspan(1)));
    if (first.starts_with('-')) return Misuse("unknown option " + std::string(first));
    const Command* const command = FindCommand(first);
    if (command == nullptr) return Misuse("there is no command '" + std::string(first) + "'");
    return Run(*command, words.subspan(1));
}

}  // namespace
}  // namespace zarvo::host::ctl

int main(int argc, char** argv) {
    using namespace zarvo::host::ctl;
    PrepareOutput();
    const std::vector<std::string_view> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    return FinishOutput(Run(words));
}
