#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

#include "tests/programs/Child.h"

namespace zarvo::test {

inline constexpr char kService[] = "vendor.zarvo.hardware.camera.aon.IAONService/default";
inline constexpr char kControls[] = "zarvo.aon.host.IHostControl/default";

/** What a process has open and what runs in it. */
struct Holdings {
    static Holdings Of(pid_t process);
    bool IsWithin(const Holdings& other) const {
        return descriptors <= other.descriptors && threads <= other.threads;
    }

    ptrdiff_t descriptors;
    ptrdiff_t threads;
};
/** For the messages of failed tests. */
void PrintTo(const Holdings& holdings, std::ostream* out);

/** What a process keeps in memory, in KiB. */
long ResidentKiB(pid_t process);

/** Tests with the service's process, in a runtime directory of their own. */
class ServiceProcess : public testing::Test {
  protected:
    ServiceProcess();
    ~ServiceProcess() override;

    /** Starts a service; it may not be reached yet. */
    std::unique_ptr<Child> Start() const;
    /** Waits until everything is published, and the service has nothing to do. */
    static void AwaitIdle(const Child& service);
    /** Waits until the service has no more than that; what it has at last. */
    static Holdings AwaitWithin(const Child& service, const Holdings& most);
    /** Waits until it has more than that; what it has at last. */
    static Holdings AwaitMore(const Child& service, const Holdings& least);
    /** A client that comes to `point` and is killed there, or lives; see Client.cpp. */
    static std::unique_ptr<Child> StartClient(const std::string& point, int microseconds = 0);
    /** All that services have logged so far. */
    std::string Log() const;

    std::string directory;
};

}  // namespace zarvo::test
