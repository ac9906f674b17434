#pragma once

#include <android/binder_status.h>

#include "host/common/FaultPoint.h"

namespace zarvo::host {

/**
 * Failures to order of the binder stand-in, for the whole process. A call ordered to fail does
 * nothing else: what it would have called is not entered. Any thread may use it.
 */
class ABINDER_API BinderFaults {
  public:
    static BinderFaults& Instance();

    /** AIBinder_linkToDeath of a remote object: STATUS_FAILED_TRANSACTION, and onUnlinked runs. */
    FaultPoint linkToDeath;
    /** AIBinder_unlinkToDeath of a remote object: STATUS_FAILED_TRANSACTION, the link stays. */
    FaultPoint unlinkToDeath;
    /** AIBinder_ping: STATUS_DEAD_OBJECT. */
    FaultPoint ping;
    /** AIBinder_transact with valid arguments, so every method: STATUS_FAILED_TRANSACTION. */
    FaultPoint transact;

  private:
    BinderFaults() = default;
};

}  // namespace zarvo::host
