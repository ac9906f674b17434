#pragma once

#include <span>
#include <string_view>

#include "host/programs/Arguments.h"

namespace zarvo::host::ctl {

/** What the program's exit status tells. */
enum ExitStatus : int {
    kDone = 0,
    /** The service refused something, or something else went wrong. */
    kFailed = 1,
    /** The command line cannot be understood; nothing was done. */
    kMisused = 2,
    /** The service does not run, or went away. */
    kNoService = 3,
};

/** One of the words that may stand first behind a command. */
struct Verb {
    /** The word itself; in capitals, it stands for any other one. */
    std::string_view name;
    /** What follows it, as the help shows it: so many words, no more and no less. */
    std::string_view words = {};
};

/** One command of the program. */
struct Command {
    std::string_view name;
    /** The words behind it, as the help shows them; see WordsHelp(). */
    std::string_view words;
    std::string_view summary;
    std::string_view details;
    /** Its own options; see AllOptions(). */
    std::span<const Option> options;
    /** How many words there may be. */
    size_t leastWords, mostWords;
    /** Runs it. An error in the arguments that only the command itself can see is set there. */
    int (*run)(Arguments& arguments);
    /** It runs a client, and has kClientOptions, too. */
    bool runsClient = false;
    /** Whatever stands behind it is for the service, options too. */
    bool passesAllOn = false;
    /** What the first word may be; it sets the words in the help, too. */
    std::span<const Verb> verbs = {};

    std::vector<Option> AllOptions() const;
    std::string WordsHelp() const;
};

int RunSensors(Arguments& arguments);
int RunWatch(Arguments& arguments);
int RunRecord(Arguments& arguments);
int RunShow(Arguments& arguments);
int RunCamera(Arguments& arguments);
int RunScene(Arguments& arguments);
int RunFault(Arguments& arguments);
int RunGetProperty(Arguments& arguments);
int RunSetProperty(Arguments& arguments);
int RunDump(Arguments& arguments);
int RunHelp(Arguments& arguments);

/** All commands, in the order of the help. */
std::span<const Command> AllCommands();
const Command* FindCommand(std::string_view name);

/** Sets an error if these are not the words that the command takes. */
void CheckWords(const Command& command, Arguments& arguments);

/** The help of the program, and of one command. */
std::string ProgramHelp();
std::string CommandHelp(const Command& command);

/**
 * What may follow these words of a command line, for shells: in each line a word and, behind a tab,
 * what it is for. ":files" and ":directories" alone in a line stand for those.
 */
std::string Completions(std::span<const std::string_view> words);

}  // namespace zarvo::host::ctl
