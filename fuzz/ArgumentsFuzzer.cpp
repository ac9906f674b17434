// The command lines of aonctl, the service, the demo and the AIDL generator, read and not obeyed;
// and what shells are told of them.

#include <cstdlib>
#include <string>
#include <variant>
#include <vector>

#include "fuzz/Input.h"
#include "host/ctl/Command.h"
#include "host/ctl/Sensors.h"
#include "host/demo/CommandLine.h"
#include "host/service/CommandLine.h"

// Its namespace hides the packages' own from what comes after it.
#include "host/aidl/Options.h"

namespace {

using Words = std::vector<std::string>;
using Views = std::span<const std::string_view>;

Words Split(std::string_view text) {
    Words words;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find('\n'));
        words.emplace_back(word);
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    return words;
}

void ChooseConfigFrom(zarvo::host::Arguments& arguments) {
    using namespace zarvo::host::ctl;
    AONSensorInfo sensor;
    sensor.frameInfos.resize(2);
    sensor.frameInfos[0].supportRates = {5, 10};
    const SensorConfigInfo config = ChooseConfig(arguments, {sensor, AONSensorInfo()});
    if (!arguments.Error().empty()) return;
    if (config.fps < 1 || config.fps > 1000 || config.serviceType < 1 || config.serviceType > 15)
        std::abort();
}

void ReadForAonctl(Views words) {
    using namespace zarvo::host::ctl;
    (void)Completions(words);
    const Command* const command = words.empty() ? nullptr : FindCommand(words[0]);
    if (command == nullptr) return;
    const std::vector<zarvo::host::Option> options = command->AllOptions();
    zarvo::host::Arguments arguments(words.subspan(1), options);
    CheckWords(*command, arguments);
    const size_t count = arguments.Words().size();
    const bool fits = count >= command->leastWords && count <= command->mostWords;
    if (arguments.Error().empty() && !fits) std::abort();
    if (command->runsClient) ChooseConfigFrom(arguments);
    constexpr int64_t kLeast = -5, kMost = 100'000;
    for (const zarvo::host::Option& option : options) {
        const int64_t number = arguments.Number(option.name, 0, kLeast, kMost);
        if (number < kLeast || number > kMost) std::abort();
    }
    for (size_t i = 0; i <= count; ++i)
        (void)arguments.NumberAt(i, "WORD", kLeast, INT64_MAX);
}

void ReadForService(Words words) {
    std::vector<char*> pointers{nullptr};
    for (std::string& word : words)
        pointers.push_back(word.data());
    const auto options =
            zarvo::host::ParseCommandLine(static_cast<int>(pointers.size()), pointers.data());
    if (!options.exitStatus && options.replayLoop && options.replay.empty()) std::abort();
}

void ReadForCompiler(Views words) {
    const auto read = zarvo::host::aidl::ParseOptions(words);
    const auto* const options = std::get_if<zarvo::host::aidl::Options>(&read);
    if (options != nullptr && options->files.empty()) std::abort();
}

}  // namespace

/** The input is the words behind the program's name, one a line. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Words words = Split(zarvo::fuzz::Text({data, size}));
    const std::vector<std::string_view> views(words.begin(), words.end());
    ReadForAonctl(views);
    ReadForService(words);
    ReadForCompiler(views);
    (void)zarvo::host::demo::ParseCommandLine(views);
    return 0;
}
