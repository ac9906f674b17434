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
class [[gnu::visibility("default")]] FoundServices {
  public:
    static FoundServices& Instance();

    /** The service's root. Null, and errno says why, if it cannot be reached: ETIMEDOUT if it is
     * there and does not answer, at the latest at `deadline`. Only a service of which this process
     * holds something, but not the root, may take longer, as in any call. */
    Ref<AIBinder> Find(const std::string& instance, const std::string& path, Deadline deadline);
    /** Lets the services found so far call this process. */
    void Start();

  private:
    struct Service {
        std::weak_ptr<RpcSession> session;
        WeakRef root;
    };

    FoundServices() = default;

    /** The session that this process has or had; and its root, if it lives and that is held. */
    std::shared_ptr<RpcSession> Known(const std::string& instance, Ref<AIBinder>* root) const;
    std::shared_ptr<RpcSession> KnownLocked(const std::string& instance, Ref<AIBinder>* root) const;
    /** The root of a new session, which others find from now on. */
    Ref<AIBinder> Connect(const std::string& instance, const std::string& path, Deadline deadline);
    /** Lets others find it, unless another thread has made one meanwhile: that one's root. */
    Ref<AIBinder> Enter(const std::string& instance, const std::shared_ptr<RpcSession>& session,
                        const Ref<AIBinder>& root);

    mutable std::mutex mMutex;
    std::map<std::string, Service> mServices;  // mMutex
};

}  // namespace zarvo::host
