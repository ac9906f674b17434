#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "host/binder/rpc/RpcClient.h"

namespace zarvo::host {

/**
 * The sessions of this process with the services it found: one for each name, as long as anything
 * of it is held. One per process, never destroyed. Thread-safe; waits for a service's answers with
 * no lock held.
 */
class FoundServices {
  public:
    static FoundServices& Instance();

    /** The service's root, null if it cannot be reached. */
    Ref<AIBinder> Find(const std::string& instance, const std::string& path);
    /** Lets the services found so far call this process. */
    void Start();

  private:
    FoundServices() = default;

    std::shared_ptr<RpcSession> Known(const std::string& instance) const;
    /** A new session, or the one that another thread has made meanwhile. */
    std::shared_ptr<RpcSession> Connect(const std::string& instance, const std::string& path);

    mutable std::mutex mMutex;
    std::map<std::string, std::weak_ptr<RpcSession>> mSessions;  // mMutex
};

}  // namespace zarvo::host
