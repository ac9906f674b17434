#pragma once

#include <android/binder_auto_utils.h>

#include <string>

namespace conformance {

/** How a call was answered, as text that tests compare: "OK", "error 1: message" for a
 * service-specific one, "exception -5: message", or "status -32" if the call itself failed. */
inline std::string Answer(const ndk::ScopedAStatus& status) {
    const std::string message = std::string(": ") + status.getMessage();
    switch (status.getExceptionCode()) {
        case EX_NONE:
            return "OK";
        case EX_SERVICE_SPECIFIC:
            return "error " + std::to_string(status.getServiceSpecificError()) + message;
        case EX_TRANSACTION_FAILED:
            return "status " + std::to_string(status.getStatus());
        default:
            return "exception " + std::to_string(status.getExceptionCode()) + message;
    }
}

inline constexpr char kOk[] = "OK";
inline constexpr char kNullCallback[] = "exception -3: ";
inline constexpr char kNested[] = "exception -5: called from inside a callback";
inline constexpr char kUnknown[] = "error 1: in_clientHandle not register";
inline constexpr char kSubscribeUnknown[] = "error 1: clientHandle not register";
inline constexpr char kBeyondRegistered[] = "error 2: service type need subset of register";
inline constexpr char kNotOffered[] = "error 1: config not support";
inline constexpr char kMoreThanRuns[] = "error 1: can support this config when sensor running";
inline constexpr char kOtherSensor[] = "error 1: can support this config when other process use";
inline constexpr char kBeyondSubscribed[] =
        "error 2: start service type is subset of subscribe service type";
inline constexpr char kOthersRun[] =
        "error 1: sensor hub is running, please do start on other process stop";
inline constexpr char kStopFirst[] = "error 1: not stop all service type, unregisterClient failed";
inline constexpr char kUnsubscribeFirst[] =
        "error 1: not unsubscribe all service type, unregisterClient failed";

}  // namespace conformance
