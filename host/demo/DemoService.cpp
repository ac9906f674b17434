#include "host/demo/DemoService.h"

#include <csignal>
#include <cstdlib>

namespace zarvo::host::demo {

DemoService::DemoService(Stage& stage, Narrator& narrator)
    : mStage(stage),
      mNarrator(narrator),
      mProcess(stage.Start("service", "vendor.zarvo.hardware.camera.aon-service", {},
                           Process::Errors::kTaken, [this](std::string_view line) {
                               mLog.emplace_back(line);
                               mNarrator.Log(line);
                           })) {}

size_t DemoService::AwaitLog(const std::string& text, size_t first) {
    mStage.Await("the service logs '" + text + "'", [&] {
        while (first < mLog.size() && mLog[first].find(text) == std::string::npos)
            ++first;
        return first < mLog.size();
    });
    return first + 1;
}

void DemoService::Terminate() {
    mStage.MayEnd(mProcess);
    mProcess.Signal(SIGTERM);
    mStage.AwaitEnd(mProcess);
    mNarrator.Tell(mProcess.Name(), "SIGTERM -> " + mProcess.EndText());
    mNarrator.Check(mProcess.HasExited(EXIT_SUCCESS), "the service ends in good order");
}

}  // namespace zarvo::host::demo
