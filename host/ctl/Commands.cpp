#include <algorithm>

#include "host/ctl/Client.h"
#include "host/ctl/Command.h"

namespace zarvo::host::ctl {
namespace {

constexpr Option kWatchOptions[] = {
        {"--json", "", "one JSON object a line, image bytes left out"},
        {"--save-images", "DIR", "every picture into this directory, as frame-NUMBER.png"},
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

/** As many words as the first one wants. */
constexpr size_t kAnyNumber = SIZE_MAX;
constexpr Verb kCameraVerbs[] = {{"list"}, {"open", "ID"}, {"close", "ID"}, {"storm", "ID CYCLES"}};
constexpr Verb kSceneVerbs[] = {{"story"}, {"nobody"},         {"one"},
                                {"two"},   {"seed", "NUMBER"}, {"jitter", "PERCENT"}};
constexpr Verb kFaultVerbs[] = {
        {"list"}, {"clear"}, {"record", "LIE VALUE"}, {"late-events", "COUNT"}, {"slow-stop", "MS"},
        {"NAME"}};

constexpr Command kCommands[] = {
        {"sensors", "", "list the sensors with their sizes and rates", "", {}, 0, 0, RunSensors},
        {"watch", "", "show events and sensor states as they come, until Ctrl-C",
         "Registers as the service's client, which puts an earlier client out. While a camera has\n"
         "the sensor it waits, and goes on when the sensor is idle again. The service tells "
         "nobody\n"
         "that another client took the place: then no more events come.\n",
         kWatchOptions, 0, 0, RunWatch, true},
        {"record", "FILE", "keep events, with pictures, and sensor states in a file, until Ctrl-C",
         "Is a client as `watch` is. FILE is a new one, or - for the standard output.\n"
         "`aonctl show` lists what is in it, and the service plays it with --replay.\n",
         kRecordOptions, 1, 1, RunRecord, true},
        {"show", "FILE", "list what is in a recording, with the seconds since its beginning", "",
         kShowOptions, 1, 1, RunShow},
        {"camera",
         "",
         "list, open and close the simulated camera devices",
         "",
         {},
         1,
         kAnyNumber,
         RunCamera,
         false,
         false,
         kCameraVerbs},
        {"scene",
         "",
         "say who is in front of the simulated sensor, and how late frames come",
         "",
         {},
         1,
         kAnyNumber,
         RunScene,
         false,
         false,
         kSceneVerbs},
        {"fault", "", "let calls of the platform fail, and records lie",
         "NAME is one that `fault list` gives. LIE is output-size, fusion-count, image-height,\n"
         "image-stride or null-event.\n",
         kFaultOptions, 1, kAnyNumber, RunFault, false, false, kFaultVerbs},
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
        {"dump",
         "[ARGUMENT]...",
         "print what the service tells of itself",
         "All arguments go to the service as they are, but for a --help that stands alone.\n",
         {},
         0,
         32,
         RunDump,
         false,
         true},
        {"help", "[COMMAND]", "tell more about a command", "", {}, 0, 1, RunHelp},
};

bool IsPlaceholder(std::string_view word) {
    return word[0] >= 'A' && word[0] <= 'Z';
}

size_t CountWords(std::string_view words) {
    return words.empty() ? 0 : 1 + static_cast<size_t>(std::count(words.begin(), words.end(), ' '));
}

/** One of the table, or the one that stands for any word; null if there is neither. */
const Verb* FindVerb(std::span<const Verb> verbs, std::string_view word) {
    const auto verb = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& known) {
        return known.name == word || IsPlaceholder(known.name);
    });
    return verb == verbs.end() ? nullptr : &*verb;
}

void CheckVerb(const Command& command, Arguments& arguments) {
    const std::string name(command.name);
    const std::string_view word = arguments.Words()[0];
    const Verb* const verb = FindVerb(command.verbs, word);
    if (verb == nullptr) {
        arguments.SetError(name + " cannot '" + std::string(word) + "'; it takes " +
                           command.WordsHelp());
        return;
    }
    const size_t count = arguments.Words().size() - 1;
    const size_t wanted = CountWords(verb->words);
    const std::string begin = name + ' ' + std::string(word);
    if (count < wanted) arguments.SetError(begin + " wants " + std::string(verb->words));
    if (count > wanted) {
        arguments.SetError("too much for " + begin + ": '" +
                           std::string(arguments.Words()[wanted + 1]) + "'");
    }
}

}  // namespace

std::vector<Option> Command::AllOptions() const {
    std::vector<Option> all;
    if (runsClient) all.assign(std::begin(kClientOptions), std::end(kClientOptions));
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

std::string Command::WordsHelp() const {
    std::string text(words);
    for (const Verb& verb : verbs) {
        if (!text.empty()) text += " | ";
        text += verb.name;
        if (!verb.words.empty()) text += ' ' + std::string(verb.words);
    }
    return text;
}

std::span<const Command> AllCommands() {
    return kCommands;
}

const Command* FindCommand(std::string_view name) {
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&](const Command& known) { return known.name == name; });
    return command == std::end(kCommands) ? nullptr : &*command;
}

void CheckWords(const Command& command, Arguments& arguments) {
    const size_t count = arguments.Words().size();
    const std::string name(command.name);
    if (count < command.leastWords) {
        arguments.SetError(name + " wants " + command.WordsHelp());
    } else if (count > command.mostWords) {
        arguments.SetError("too much for " + name + ": '" +
                           std::string(arguments.Words()[command.mostWords]) + "'");
    } else if (!command.verbs.empty()) {
        CheckVerb(command, arguments);
    }
}

}  // namespace zarvo::host::ctl
