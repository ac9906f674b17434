#include <cstdio>
#include <optional>
#include <string>

#include "host/ctl/Client.h"
#include "host/ctl/Command.h"
#include "host/ctl/Images.h"
#include "host/ctl/Output.h"
#include "host/text/EventJson.h"
#include "host/text/EventText.h"

namespace zarvo::host::ctl {
namespace {

/** Writes each event and state in a line, and saves pictures if it is told where. */
class Watcher : public ClientSink {
  public:
    Watcher(bool json, std::optional<ImageSaver> images)
        : mJson(json), mImages(std::move(images)) {}

    bool OnConfig(const SensorConfigInfo&) override {
        mStart = std::chrono::steady_clock::now();
        return !mImages || mImages->MakeDirectory();
    }
    bool OnEvent(Time arrival, const AONCallBackInfo& info) override {
        if (!WriteLine(mJson ? EventJson(info) : TimeText(arrival) + EventText(info))) return false;
        return !mImages || mImages->Save(info);
    }
    bool OnState(Time arrival, const AONSensorStateInfo& info) override {
        return WriteLine(mJson ? StateJson(info) : TimeText(arrival) + "** " + StateText(info));
    }
    bool OnEnd(uint64_t eventsMissed) override {
        if (eventsMissed != 0) {
            std::fprintf(stderr, "aonctl: %llu events came too fast and are not shown\n",
                         static_cast<unsigned long long>(eventsMissed));
        }
        return true;
    }

  private:
    /** Seconds since the client registered. */
    std::string TimeText(Time arrival) const {
        const std::chrono::duration<double> seconds = arrival - mStart;
        char text[32];
        std::snprintf(text, sizeof(text), "%8.3f  ", seconds.count());
        return text;
    }

    const bool mJson;
    const std::optional<ImageSaver> mImages;
    Time mStart;
};

}  // namespace

int RunWatch(Arguments& arguments) {
    std::optional<ImageSaver> images;
    if (arguments.Has("--save-images"))
        images.emplace(std::string(arguments.Value("--save-images")));
    Watcher watcher(arguments.Has("--json"), std::move(images));
    WhenReaderLeaves(EndClient);
    return RunClient(arguments, watcher);
}

}  // namespace zarvo::host::ctl
