#include <climits>
#include <cstdio>
#include <string>
#include <utility>

#include "host/ctl/Command.h"
#include "host/ctl/Service.h"

namespace zarvo::host::ctl {
namespace {

using aidl::zarvo::aon::host::CameraDevice;
using aidl::zarvo::aon::host::Cast;
using aidl::zarvo::aon::host::FaultPoint;
using aidl::zarvo::aon::host::RecordFaults;

int ListCameras(IHostControl& controls) {
    std::vector<CameraDevice> devices;
    const int result = Report("list the cameras", controls.listCameras(&devices));
    for (const CameraDevice& device : devices) {
        std::printf("camera %d  %-6s  sensors", device.instanceId,
                    device.isOpen ? "open" : "closed");
        for (const int sensorId : device.sensorIds)
            std::printf(" %d", sensorId);
        std::puts("");
    }
    return result;
}

int ListFaults(IHostControl& controls) {
    std::vector<FaultPoint> faults;
    const int result = Report("list the faults", controls.listFaults(&faults));
    for (const FaultPoint& fault : faults)
        std::printf("%-28s called %lld times\n", fault.name.c_str(),
                    static_cast<long long>(fault.calls));
    return result;
}

/** Null if there is no such lie. */
int64_t* FindLie(std::string_view lie, RecordFaults& faults) {
    constexpr std::pair<std::string_view, int64_t RecordFaults::*> kLies[] = {
            {"output-size", &RecordFaults::outputSize},
            {"fusion-count", &RecordFaults::fusionCount},
            {"image-height", &RecordFaults::imageHeight},
            {"image-stride", &RecordFaults::imageStride}};
    for (const auto& [name, member] : kLies)
        if (name == lie) return &(faults.*member);
    return nullptr;
}

/** The lie in the words behind `record`; an error is set if there is none. */
RecordFaults ReadLie(Arguments& arguments) {
    RecordFaults faults;
    const std::string_view lie = arguments.Words()[1];
    const int64_t value = arguments.NumberAt(2, "VALUE", 0, UINT_MAX);
    if (int64_t* const told = FindLie(lie, faults))
        *told = value;
    else if (lie == "null-event")
        faults.nullEvent = value != 0;
    else
        arguments.SetError("there is no lie '" + std::string(lie) + "'");
    return faults;
}

}  // namespace

int RunCamera(Arguments& arguments) {
    const std::string_view verb = arguments.Words()[0];
    int32_t device = 0;
    int32_t cycles = 0;
    if (verb != "list") device = static_cast<int32_t>(arguments.NumberAt(1, "ID", 0, INT_MAX));
    if (verb == "storm") cycles = static_cast<int32_t>(arguments.NumberAt(2, "CYCLES", 0, INT_MAX));
    if (!arguments.Error().empty()) return kMisused;
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    if (verb == "list") return ListCameras(*controls);
    if (verb == "open") return Report("open the camera", controls->openCamera(device));
    if (verb == "close") return Report("close the camera", controls->closeCamera(device));
    return Report("storm the camera", controls->stormCamera(device, cycles));
}

int RunScene(Arguments& arguments) {
    constexpr std::pair<std::string_view, Cast> kCasts[] = {{"story", Cast::STORY},
                                                            {"nobody", Cast::NOBODY},
                                                            {"one", Cast::ONE},
                                                            {"two", Cast::TWO}};
    const std::string_view word = arguments.Words()[0];
    int64_t number = 0;
    if (word == "seed") number = arguments.NumberAt(1, "NUMBER", 0, INT64_MAX);
    if (word == "jitter") number = arguments.NumberAt(1, "PERCENT", 0, 100);
    if (!arguments.Error().empty()) return kMisused;
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    for (const auto& [name, cast] : kCasts)
        if (name == word) return Report("set the scene", controls->setCast(cast));
    if (word == "seed") return Report("set the seed", controls->setSeed(number));
    return Report("set the jitter", controls->setJitter(static_cast<float>(number) / 100));
}

int RunFault(Arguments& arguments) {
    const std::string word(arguments.Words()[0]);
    const int64_t first = arguments.Number("--first", 1, 1, INT64_MAX);
    const int64_t count = arguments.Number("--count", -1, 0, INT64_MAX);
    int32_t number = 0;
    RecordFaults lies;
    if (word == "record") lies = ReadLie(arguments);
    if (word == "late-events")
        number = static_cast<int32_t>(arguments.NumberAt(1, "COUNT", 0, INT_MAX));
    if (word == "slow-stop") number = static_cast<int32_t>(arguments.NumberAt(1, "MS", 0, INT_MAX));
    if (!arguments.Error().empty()) return kMisused;
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    if (word == "list") return ListFaults(*controls);
    if (word == "clear") return Report("clear the faults", controls->clearFaults());
    if (word == "late-events") return Report("order it", controls->setEventsAfterStop(number));
    if (word == "slow-stop") return Report("order it", controls->setStopDelay(number));
    if (word == "record") {
        return Report("let records lie", controls->setRecordFaults(lies, first, count));
    }
    return Report("order the fault", controls->failCalls(word, first, count));
}

int RunGetProperty(Arguments& arguments) {
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    std::string value;
    const std::string name(arguments.Words()[0]);
    const int result = Report("read the property", controls->getProperty(name, &value));
    if (result == kDone) std::printf("%s\n", value.c_str());
    return result;
}

int RunSetProperty(Arguments& arguments) {
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    const std::string name(arguments.Words()[0]);
    const std::string value(arguments.Words()[1]);
    return Report("set the property", controls->setProperty(name, value));
}

int RunDump(Arguments& arguments) {
    const auto controls = FindControls();
    if (controls == nullptr) return kNoService;
    std::string text;
    const std::vector<std::string> words(arguments.Words().begin(), arguments.Words().end());
    const int result = Report("dump", controls->dumpService(words, &text));
    std::fputs(text.c_str(), stdout);
    return result;
}

}  // namespace zarvo::host::ctl
