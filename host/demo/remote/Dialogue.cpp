#include "host/demo/remote/Dialogue.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <mutex>
#include <string>

#include "host/programs/Lines.h"

namespace zarvo::host::demo {
namespace {

/** Never destroyed: a callback may report while the program ends. */
std::mutex& OutputMutex() {
    static auto* const mutex = new std::mutex();
    return *mutex;
}

/** The numbers of a line; empty if one is none. */
std::vector<int64_t> ParseNumbers(std::string_view text) {
    std::vector<int64_t> numbers;
    while (!text.empty()) {
        const auto number = ParseNumber(TakeWord(text));
        if (!number) return {};
        numbers.push_back(*number);
    }
    return numbers;
}

bool Run(const std::vector<Command>& commands, std::string_view line) {
    const std::string_view name = TakeWord(line);
    const std::vector<int64_t> numbers = ParseNumbers(line);
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command& known) {
        return known.name == name && known.numbers == numbers.size();
    });
    if (command == commands.end()) return false;
    const ndk::ScopedAStatus status = command->run(numbers);
    if (status.isOk()) {
        Report("ok");
    } else if (status.getStatus() == STATUS_DEAD_OBJECT) {
        Report("lost");
    } else {
        Report("refused", status.getDescription());
    }
    return true;
}

}  // namespace

void Report(std::string_view kind, std::string_view text) {
    std::string line = std::string(kind) + ' ' + std::string(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    const std::lock_guard lock(OutputMutex());
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t written = write(STDOUT_FILENO, rest.data(), rest.size());
        if (written <= 0) return;
        rest.remove_prefix(static_cast<size_t>(written));
    }
}

int ServeCommands(const std::vector<Command>& commands) {
    Report("ready");
    std::string line;
    while (std::getline(std::cin, line)) {
        if (!Run(commands, line)) return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}  // namespace zarvo::host::demo
