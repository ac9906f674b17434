#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/binder/services/FileDescriptor.h"
#include "host/programs/Lines.h"

namespace zarvo::host {

/**
 * A child process, what it is told and the lines that it prints. It is killed when this program
 * dies, and by Kill; who owns this must have seen its end. Used by one thread, the only one when a
 * process is started.
 */
class Process {
  public:
    /** Which streams of the child's besides its standard input and output come here. */
    enum class Errors { kInherited, kTaken };
    /** Its process group. In one of its own it does not hear what is typed at this program: neither
     * Ctrl-C, nor Ctrl-Z. In the parent's it does, and begins with SIGINT blocked. */
    enum class Group { kParents, kOwn };

    /** Starts the program; if the system refuses, Pid() is -1 and errno tells why. A program that
     * cannot be run ends at once, with a line that says so. */
    Process(std::string name, const std::vector<std::string>& command, Errors errors,
            Group group = Group::kParents);

    const std::string& Name() const { return mName; }
    /** The name, and the number of the process. */
    std::string Title() const;
    pid_t Pid() const { return mPid; }

    // Talking.

    /** Gives it a line on its standard input; lost if it has ended. */
    void Send(std::string_view line) const;
    /** Ends its standard input. */
    void CloseInput() const;
    /** Where its output comes; -1 once that has ended. */
    int Output() const { return mSocket.Get(); }
    /** Reads what has come, without waiting. */
    void Receive();
    std::optional<std::string> NextLine() { return mLines.Next(); }

    // Its end.

    void Signal(int signal) const;
    /** Looks whether it has ended, without waiting. */
    void Reap();
    /** Kills it and waits for that. */
    void Kill();
    /** Whether it has ended, and its end was seen. */
    bool HasEnded() const { return mStatus.has_value(); }
    /** Whether it has, and that way. */
    bool HasExited(int code) const;
    bool WasKilled(int signal) const;
    /** How it ended, in words. */
    std::string EndText() const;

  private:
    const std::string mName;
    FileDescriptor mSocket;
    pid_t mPid = -1;
    LineBuffer mLines;
    /** As waitpid tells it. */
    std::optional<int> mStatus;
};

}  // namespace zarvo::host
