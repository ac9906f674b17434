#include "host/binder/BinderFaults.h"

namespace zarvo::host {

BinderFaults& BinderFaults::Instance() {
    // Never destroyed: a connection's thread may ask until the very end of the process.
    static BinderFaults* const faults = new BinderFaults;
    return *faults;
}

}  // namespace zarvo::host
