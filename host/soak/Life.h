#pragma once

#include <memory>
#include <set>
#include <vector>

#include "host/soak/Client.h"
#include "host/soak/Report.h"
#include "host/soak/ServiceProcess.h"

namespace zarvo::host::soak {

/**
 * A client of the service in this process, from its registration to its end. What goes wrong goes
 * to the row; from then on it does nothing more. Used by one thread.
 */
class Life {
  public:
    /** Registers and subscribes a client that expects those states over and over. */
    Life(ServiceProcess& service, Row& row, std::vector<int> states,
         Client::Besides besides = Client::Besides::kNothing);
    /** Stops, unsubscribes and unregisters; its states must have come to the end of a cycle. */
    ~Life();
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    // Each false, and a finding, if it went wrong.
    bool Start();
    /** That the service refuses it for a camera's sake. */
    bool ExpectRefusedStart();
    bool Stop();
    bool OpenCamera(int device);
    bool CloseCamera(int device);
    bool StormCamera(int device, uint64_t cycles);
    bool AwaitStates(uint64_t count, int sensor = 0);
    /** The same, while it starts and stops as fast as the service takes it; a refusal for a
     * camera's sake is right. */
    bool StartUntilStates(uint64_t count, int sensor);
    bool AwaitEvents(uint64_t count);
    /** Whether the stream runs as it should. */
    bool ExpectStreaming(bool streaming);
    bool Check(bool holds, const std::string& finding);

    /** Whether nothing went wrong so far. */
    bool IsGood() const { return mGood; }
    Client& Callback() { return *mClient; }

  private:
    bool Must(const char* call, const ndk::ScopedAStatus& status);

    ServiceProcess& mService;
    Row& mRow;
    const std::shared_ptr<Client> mClient;
    int64_t mHandle = 0;
    std::set<int> mOpenCameras;
    bool mGood = true;
};

}  // namespace zarvo::host::soak
