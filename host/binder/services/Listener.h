#pragma once

#include <android/binder_status.h>

#include <memory>
#include <string>
#include <thread>

#include "host/binder/rpc/RpcServer.h"
#include "host/binder/services/FileDescriptor.h"
#include "host/binder/services/RuntimeDirectory.h"

namespace zarvo::host {

/**
 * A published name: a socket file at which a server is reached. The file is there from Open to the
 * end of this; a file that a dead process left behind is replaced, one that somebody serves is
 * not. Used under its owner's lock.
 */
class Listener {
  public:
    /** EX_NONE, or EX_ILLEGAL_STATE if anybody but `replaced`, which may be null, serves the name,
     * or the system refuses. The name goes over without a gap, to who accepts if `isServing`. */
    static binder_exception_t Open(const RuntimeDirectory& directory, const std::string& instance,
                                   std::shared_ptr<RpcServer> server, bool isServing,
                                   const Listener* replaced, std::unique_ptr<Listener>* listener);
    /** Takes the file away, ends all sessions and waits for the accepting thread. */
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /** Begins to accept, once; who came before is accepted first. False without a thread. */
    bool Start();
    /** Takes the file away, if it is still this one's. */
    void RemoveFile();

  private:
    Listener(FileDescriptor socket, std::string path, std::shared_ptr<RpcServer> server);

    bool IsAt(const std::string& path) const;
    /** False, and nothing changes, if the system refuses. */
    bool MoveTo(const std::string& path);

    const FileDescriptor mSocket;
    std::string mPath;
    const std::shared_ptr<RpcServer> mServer;
    ino_t mFile = 0;
    std::thread mThread;
};

}  // namespace zarvo::host
