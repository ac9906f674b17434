#pragma once

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONService.h>
#include <aidl/zarvo/aon/host/IHostControl.h>

#include <memory>
#include <string>
#include <vector>

#include "host/programs/Process.h"

namespace zarvo::host::soak {

/** What a process holds. */
struct Holdings {
    static Holdings Of(pid_t process);

    long descriptors = 0;
    long threads = 0;
    /** Memory that no file is behind, KiB: the heap and the stacks. */
    long memory = 0;
};

/** The service in a process of its own, and the way to it. Used by one thread, the first one. */
class ServiceProcess {
  public:
    using IAONService = aidl::vendor::zarvo::hardware::camera::aon::IAONService;
    using IHostControl = aidl::zarvo::aon::host::IHostControl;

    /** Starts it, and waits until it serves; see Serves(). */
    explicit ServiceProcess(const std::vector<std::string>& options);
    /** Kills it if it was not ended. */
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    /** Whether it runs and was reached; what follows is for one that does. */
    bool Serves();
    IAONService& Service() const { return *mService; }
    IHostControl& Controls() const { return *mControls; }
    /** Whether the always-on stream runs; false, too, if nobody answers. */
    bool IsStreaming() const;
    /** False if it streams on for too long. */
    bool AwaitReleased() const;
    /** What the service's dump says, as JSON. */
    std::string Dump() const;

    Holdings Now() const { return Holdings::Of(mProcess.Pid()); }
    /** Waits until its descriptors and threads stay the same. */
    Holdings AwaitSettled() const;
    /** The same, and until it has neither more descriptors nor more threads than that. */
    Holdings AwaitWithin(const Holdings& most) const;
    /** Tells it to end; empty if it does, in good order. */
    std::string End();

  private:
    bool Runs();

    Process mProcess;
    std::shared_ptr<IAONService> mService;
    std::shared_ptr<IHostControl> mControls;
};

/** The number behind a key of a dump; -1 if there is none. */
int64_t NumberIn(const std::string& dump, const std::string& key);

/** The path of a program in this program's directory. */
std::string PathBesideThis(const std::string& program);

}  // namespace zarvo::host::soak
