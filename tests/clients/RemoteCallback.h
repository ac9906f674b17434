#pragma once

#include <memory>

#include "host/binder/Loopback.h"
#include "tests/clients/RecordingCallback.h"

namespace zarvo::test {

/** A callback as a service in another process sees it: through a proxy, mortal. */
struct RemoteCallback {
    using IAONServiceCallBack = aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack;

    std::shared_ptr<RecordingCallback> local = ndk::SharedRefBase::make<RecordingCallback>();
    std::shared_ptr<host::Loopback> connection = host::Loopback::Connect(local->asBinder().get());
    std::shared_ptr<IAONServiceCallBack> proxy =
            IAONServiceCallBack::fromBinder(connection->Root());

    /** Ends the client's process and waits until its death was told. */
    void Die() const {
        connection->Kill();
        connection->WaitForNotices();
    }
};

}  // namespace zarvo::test
