#include <algorithm>

#include "host/ctl/Client.h"
#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

constexpr Option kWatchOptions[] = {
        {"--json", "", "one JSON object a line, image bytes left out"},
};
constexpr Option kRecordOptions[] = {
        {"--force", "", "write over a file that is there"},
};
constexpr Option kShowOptions[] = {
        {"--json", "", "one JSON object a line, image bytes left out"},
};
constexpr Option kFaultOptions[] = {
        {"--first", "NUMBER", "the first call that fails, counted from now on; 1 unless given"},
        {"--count", "NUMBER", "how many fail; all unless given"},
};

constexpr Command kCommands[] = {
        {"sensors", "", "list the sensors with their sizes and rates", "", {}, 0, 0, RunSensors},
        {"watch", "", "show events and sensor states as they come, until Ctrl-C",
         "Registers as the service's client, which puts an earlier client out. While a camera has\n"
         "the sensor it waits, and goes on when the sensor is idle again.\n",
         kWatchOptions, 0, 0, RunWatch, true},
        {"record", "FILE", "keep events, with pictures, and sensor states in a file, until Ctrl-C",
         "Is a client as `watch` is. FILE is a new one, or - for the standard output.\n"
         "`aonctl show` lists what is in it, and the service plays it with --replay.\n",
         kRecordOptions, 1, 1, RunRecord, true},
        {"show", "FILE", "list what is in a recording, with the seconds since its beginning", "",
         kShowOptions, 1, 1, RunShow},
        {"camera",
         "list | open ID | close ID | storm ID CYCLES",
         "list, open and close the simulated camera devices",
         "",
         {},
         1,
         3,
         RunCamera},
        {"scene",
         "story | nobody | one | two | seed NUMBER | jitter PERCENT",
         "say who is in front of the simulated sensor, and how late frames come",
         "",
         {},
         1,
         2,
         RunScene},
        {"fault", "list | clear | NAME | record LIE VALUE | late-events COUNT | slow-stop MS",
         "let calls of the platform fail, and records lie",
         "LIE is output-size, fusion-count, image-height, image-stride or null-event.\n",
         kFaultOptions, 1, 3, RunFault},
        {"getprop",
         "NAME",
         "print a property of the service's process",
         "",
         {},
         1,
         1,
         RunGetProperty},
        {"setprop",
         "NAME VALUE",
         "set a property of the service's process",
         "",
         {},
         2,
         2,
         RunSetProperty},
        {"dump", "[ARGUMENT]...", "print what the service tells of itself", "", {}, 0, 32, RunDump},
};

std::string OptionHelp(const Option& option) {
    std::string line = "  " + std::string(option.name);
    if (!option.value.empty()) line += ' ' + std::string(option.value);
    line.resize(std::max<size_t>(line.size() + 2, 24), ' ');
    return line + std::string(option.help) + '\n';
}

}  // namespace

std::vector<Option> Command::AllOptions() const {
    std::vector<Option> all;
    if (runsClient) all.assign(std::begin(kClientOptions), std::end(kClientOptions));
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

std::span<const Command> AllCommands() {
    return kCommands;
}

const Command* FindCommand(std::string_view name) {
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&](const Command& known) { return known.name == name; });
    return command == std::end(kCommands) ? nullptr : &*command;
}

std::string ProgramHelp() {
    std::string text =
            "usage: aonctl COMMAND [ARGUMENT]...\n\n"
            "Uses, watches and pokes the always-on camera service of this user.\n\n";
    for (const Command& command : kCommands) {
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
    std::string text = "usage: aonctl " + std::string(command.name);
    if (!command.AllOptions().empty()) text += " [OPTION]...";
    if (!command.words.empty()) text += ' ' + std::string(command.words);
    std::string summary(command.summary);
    summary.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(summary.front())));
    text += "\n\n" + summary + ".\n" + std::string(command.details);
    const std::vector<Option> options = command.AllOptions();
    if (!options.empty()) text += '\n';
    for (const Option& option : options)
        text += OptionHelp(option);
    return text;
}

}  // namespace zarvo::host::ctl
