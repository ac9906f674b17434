#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/binder/services/FileDescriptor.h"
#include "host/demo/Narrator.h"
#include "host/programs/Process.h"

namespace zarvo::host::demo {

/**
 * Where the story plays: the processes, the directory by which they find each other, and the one
 * loop in which everything that happens is heard, in the order of cause and effect. There is one;
 * used by the main thread of a program that has no other.
 *
 * Whatever goes wrong, a signal included, ends in Abort: no process and no file is left, and the
 * user is told why in one line. No wait is longer than 20 seconds.
 */
class Stage {
  public:
    /** Takes a line that a process printed. */
    using LineSink = std::function<void(std::string_view line)>;

    explicit Stage(Narrator& narrator);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /** Starts a program that lies beside this one. It is heard from the next wait on, the first one
     * started before all others; its end, before MayEnd, is the story's. */
    Process& Start(const std::string& name, const std::string& program,
                   const std::vector<std::string>& arguments, Process::Errors errors,
                   LineSink sink);
    /** From here on the process is expected to end. */
    void MayEnd(const Process& process);

    /** Hears what happens until the condition holds. */
    void Await(const std::string& what, const std::function<bool()>& condition);
    /** Waits until the process has ended and all it said was heard. */
    void AwaitEnd(const Process& process);
    /** Hears what happens for so long. */
    void Pause(std::chrono::milliseconds time);

    /** Whether this program has no child, seen or unseen. */
    static bool IsAlone();
    /** Removes the directory; false if a process has left something there. */
    bool RemoveDirectory();

    /** Ends the program: everything else first. */
    [[noreturn]] void Abort(const std::string& why);

  private:
    using Time = std::chrono::steady_clock::time_point;

    /** Somebody who takes part. */
    struct Role {
        std::unique_ptr<Process> process;
        LineSink sink;
        bool mayEnd = false;
    };

    void TakeSignals();
    void MakeDirectory();
    /** Waits for the next thing to happen, and hears of it. */
    void Turn(Time until);
    void WaitForAnything(Time until) const;
    void Hear();
    void CheckRoles();
    void HandleSignals();
    /** Kills what runs and removes what is there. */
    void Clear();

    Narrator& mNarrator;
    std::string mDirectory;
    FileDescriptor mSignals;
    std::vector<Role> mRoles;
    /** Whether the user has stopped and continued the program since a wait began. */
    bool mWasStopped = false;
};

}  // namespace zarvo::host::demo
