#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/programs/Process.h"

namespace zarvo::host::soak {

/** Where a client is killed. */
struct KillState {
    /** Its name on the command line. */
    std::string_view name;
    std::string_view title;
};
std::span<const KillState> AllKillStates();

/**
 * Runs the client that is to be killed, in a process of its own: it goes on until it is in that
 * state, prints "there", and stays there. Gives an exit status if it cannot, and prints why.
 */
int RunVictim(std::string_view state);

/** Such a process, seen by who kills it. Used by one thread, the first one. */
class Victim {
  public:
    /** Starts it. */
    explicit Victim(std::string_view state);
    ~Victim();
    Victim(const Victim&) = delete;
    Victim& operator=(const Victim&) = delete;

    /** Waits until it is there; empty then, else what it says instead. */
    std::string AwaitThere();
    /** Stops all its threads as SIGSTOP does. */
    void Stop() const;
    /** Kills it, as SIGKILL does, and waits until it is dead. */
    void Kill() { mProcess.Kill(); }

  private:
    Process mProcess;
};

}  // namespace zarvo::host::soak
