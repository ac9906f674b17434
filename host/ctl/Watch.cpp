#include <cstdio>
#include <string>

#include "host/ctl/Client.h"
#include "host/ctl/Command.h"
#include "host/text/EventJson.h"
#include "host/text/EventText.h"

namespace zarvo::host::ctl {
namespace {

/** Writes each event and state in a line. */
class LineWriter : public ClientSink {
  public:
    explicit LineWriter(bool json) : mJson(json) {}

    bool OnEvent(Time, const AONCallBackInfo& info) override {
        return Write(mJson ? EventJson(info) : EventText(info));
    }
    bool OnState(Time, const AONSensorStateInfo& info) override {
        return Write(mJson ? StateJson(info) : StateText(info));
    }

  private:
    static bool Write(const std::string& line) {
        if (std::puts(line.c_str()) >= 0 && std::fflush(stdout) == 0) return true;
        std::perror("aonctl: cannot write");
        return false;
    }

    const bool mJson;
};

}  // namespace

int RunWatch(Arguments& arguments) {
    LineWriter lines(arguments.Has("--json"));
    return RunClient(arguments, lines);
}

}  // namespace zarvo::host::ctl
