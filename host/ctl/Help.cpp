#include <algorithm>
#include <cctype>
#include <cstdio>

#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

constexpr size_t kHelpColumn = 26;

std::string OptionHelp(const Option& option) {
    std::string line = "  " + std::string(option.name);
    if (!option.value.empty()) line += ' ' + std::string(option.value);
    line.resize(std::max<size_t>(line.size() + 2, kHelpColumn), ' ');
    return line + std::string(option.help) + '\n';
}

/** The usage line for each thing that the command can do. */
std::string Usage(const Command& command) {
    const std::string begin = "aonctl " + std::string(command.name) +
                              (command.AllOptions().empty() ? "" : " [OPTION]...");
    if (command.verbs.empty()) {
        return "usage: " + begin + (command.words.empty() ? "" : ' ' + std::string(command.words)) +
               '\n';
    }
    std::string text;
    for (const Verb& verb : command.verbs) {
        text += (text.empty() ? "usage: " : "       ") + begin + ' ' + std::string(verb.name) +
                (verb.words.empty() ? "" : ' ' + std::string(verb.words)) + '\n';
    }
    return text;
}

std::string Capitalized(std::string_view text) {
    std::string result(text);
    result.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(result.front())));
    return result;
}

std::string Candidate(std::string_view word, std::string_view help) {
    return std::string(word) + '\t' + std::string(help) + '\n';
}

/** A placeholder, as the help shows it, in what it stands for. */
std::string Meant(std::string_view placeholder) {
    if (placeholder == "DIR") return ":directories\n";
    if (placeholder.starts_with("FILE")) return ":files\n";
    std::string text;
    if (placeholder == "[COMMAND]")
        for (const Command& command : AllCommands())
            text += Candidate(command.name, command.summary);
    return text;
}

std::string Values(const Option& option) {
    std::string text = Meant(option.value);
    for (std::string_view rest = option.choices; !rest.empty();) {
        const std::string_view choice = rest.substr(0, rest.find(' '));
        text += Candidate(choice, {});
        rest.remove_prefix(std::min(rest.size(), choice.size() + 1));
    }
    return text;
}

}  // namespace

std::string ProgramHelp() {
    std::string text =
            "usage: aonctl COMMAND [ARGUMENT]...\n\n"
            "Uses, watches and pokes the always-on camera service of this user.\n\n";
    for (const Command& command : AllCommands()) {
        std::string line = "  " + std::string(command.name);
        line.resize(12, ' ');
        text += line + std::string(command.summary) + '\n';
    }
    return text +
           "\n`aonctl COMMAND --help` tells more. --version prints the version.\n"
           "AON_RUNTIME_DIR names another directory for the services' sockets.\n\n"
           "Exit status: 0 when done, 1 when something was refused or went wrong, 2 for a bad\n"
           "command line, 3 when the service does not run or went away.\n";
}

std::string CommandHelp(const Command& command) {
    std::string text = Usage(command) + '\n' + Capitalized(command.summary) + ".\n" +
                       std::string(command.details);
    const std::vector<Option> options = command.AllOptions();
    if (!options.empty()) text += '\n';
    for (const Option& option : options)
        text += OptionHelp(option);
    return text;
}

std::string Completions(std::span<const std::string_view> words) {
    if (words.empty()) return Meant("[COMMAND]") + "--help\t\n--version\t\n";
    const Command* const command = FindCommand(words[0]);
    if (command == nullptr || command->passesAllOn) return {};
    const std::vector<Option> options = command->AllOptions();
    const std::string_view last = words.back() == "=" ? words[words.size() - 2] : words.back();
    for (const Option& option : options)
        if (option.name == last && !option.value.empty()) return Values(option);
    std::string text = words.size() == 1 ? Meant(command->words) : "";
    if (words.size() == 1)
        for (const Verb& verb : command->verbs)
            if (std::islower(static_cast<unsigned char>(verb.name[0])) != 0)
                text += Candidate(verb.name, verb.words);
    for (const Option& option : options)
        text += Candidate(option.name, option.help);
    return text + "--help\t\n";
}

int RunHelp(Arguments& arguments) {
    if (arguments.Words().empty()) {
        std::fputs(ProgramHelp().c_str(), stdout);
        return kDone;
    }
    const std::string_view name = arguments.Words()[0];
    const Command* const command = FindCommand(name);
    if (command == nullptr) {
        arguments.SetError("there is no command '" + std::string(name) + "'");
        return kMisused;
    }
    std::fputs(CommandHelp(*command).c_str(), stdout);
    return kDone;
}

}  // namespace zarvo::host::ctl
