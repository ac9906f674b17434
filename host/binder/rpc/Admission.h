#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>

#include "host/binder/rpc/Connection.h"

namespace zarvo::host {

/**
 * Bounds the connections that others have to one server, so that neither descriptors nor threads
 * run out: so many of all processes together, and so many of each, lest one keeps the others out.
 * Thread-safe; the connections may outlive it.
 */
class Admission {
  public:
    /** The connection, which counts until it ends; null, and the socket is closed, if there are too
     * many. */
    std::shared_ptr<Connection> Admit(Socket socket);

  private:
    class Count {
      public:
        bool Enter(pid_t process);
        void Leave(pid_t process);

      private:
        std::mutex mMutex;
        size_t mAll = 0;                     // mMutex
        std::map<pid_t, size_t> mOfProcess;  // mMutex
    };

    const std::shared_ptr<Count> mCount = std::make_shared<Count>();
};

}  // namespace zarvo::host
