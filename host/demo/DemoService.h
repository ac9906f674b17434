#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/demo/Stage.h"

namespace zarvo::host::demo {

/** The service's own program, in a process of its own; what it logs is told. */
class DemoService {
  public:
    DemoService(Stage& stage, Narrator& narrator);
    DemoService(const DemoService&) = delete;
    DemoService& operator=(const DemoService&) = delete;

    /** How many lines it has logged so far. */
    size_t LogSize() const { return mLog.size(); }
    /** Waits for a line that holds this text, the `first` one or later; gives the next's number. */
    size_t AwaitLog(const std::string& text, size_t first);

    /** Tells it to end, as a system does, and waits for its end. */
    void Terminate();
    const Process& GetProcess() const { return mProcess; }

  private:
    Stage& mStage;
    Narrator& mNarrator;
    std::vector<std::string> mLog;
    Process& mProcess;
};

}  // namespace zarvo::host::demo
