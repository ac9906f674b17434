#pragma once

#include <cstdint>
#include <memory>

#include <aidl/vendor/zarvo/hardware/camera/aon/IAONServiceCallBack.h>

namespace zarvo::aon {

/** Is told of clients that died. */
class IRemoteCallbackManagerListener {
  public:
    virtual ~IRemoteCallbackManagerListener() = default;

    /**
     * The client is gone from the registry; `callback` is what it had registered. Comes on the
     * thread of the death notice, without a lock of the registry's.
     */
    virtual void OnRemoteCallbackDied(
            int64_t clientHandle,
            const std::shared_ptr<aidl::vendor::zarvo::hardware::camera::aon::IAONServiceCallBack>&
                    callback) = 0;
};

}  // namespace zarvo::aon
