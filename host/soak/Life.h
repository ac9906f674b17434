#pragma once

#include <memory>
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
         Client::Last last = Client::Last::kOnce);
    /** Stops, unsubscribes and unregisters; its states must have come to the end of a cycle. */
    ~Life();
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    // Each false, and a finding, if it went wrong.
    bool Start();
    bool Stop();
    bool OpenCamera(int device);
    bool CloseCamera(int device);
    bool StormCamera(int device, uint64_t cycles);
    bool AwaitStates(uint64_t count, int sensor = 0);
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
    bool mGood = true;
};

}  // namespace zarvo::host::soak
