#pragma once

#include <android/binder_status.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "host/binder/services/Listener.h"

namespace zarvo::host {

/**
 * The services of this process. One per process, never destroyed: whoever exits with services
 * published takes their names back, and leaves their sessions to the system. Thread-safe.
 */
class [[gnu::visibility("default")]] PublishedServices {
  public:
    static PublishedServices& Instance();

    /** See AServiceManager_addService; the arguments are sound. */
    binder_exception_t Publish(const std::string& instance, Ref<AIBinder> object);
    /** The object of that name, null if this process has none. */
    Ref<AIBinder> Find(const std::string& instance) const;
    /** Lets others in, now and for what is published later. */
    void Start();
    /** Takes all names back, then ends all sessions, and waits for their threads and for every
     * death notice. Not from a call. */
    void WithdrawAll();

  private:
    struct Service {
        Ref<AIBinder> object;
        std::unique_ptr<Listener> listener;
    };

    PublishedServices() = default;

    void RemoveFiles();
    void RemoveFilesLocked();

    mutable std::mutex mMutex;
    std::map<std::string, Service> mServices;  // mMutex
};

}  // namespace zarvo::host
